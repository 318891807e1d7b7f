out/r.rsrc: \
  in.vd \
  rec$$\#.h \
  my\ inc/width.h

rec$$\#.h:

my\ inc/width.h:
