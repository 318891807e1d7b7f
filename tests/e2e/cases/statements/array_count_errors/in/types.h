type Fixed('FIXD') { array[2] { byte; }; };
type None('NONE') { array[0] { byte; }; };
type Constant('CNST') { array { byte = 5; }; };
