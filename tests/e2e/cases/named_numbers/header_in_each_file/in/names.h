enum { kOne = 1, kTwo };
const long kThree = kOne + kTwo;
