out/r.rsrc: \
  in.vd \
  rec$$\#.h \
  my\ inc/width.h \
  my\ inc/blob.bin

rec$$\#.h:

my\ inc/width.h:

my\ inc/blob.bin:
