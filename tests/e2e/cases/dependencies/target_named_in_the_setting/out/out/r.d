all\ of\ it: \
  in.vd
