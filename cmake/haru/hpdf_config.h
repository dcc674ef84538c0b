/* What libharu may count on. It asks for no more, and pictures are not drawn. */
#define LIBHPDF_HAVE_LIBZ 1
#define LIBHPDF_HAVE_NOPNGLIB 1
#define HPDF_NOPNGLIB 1
#define LIBHPDF_STDC_HEADERS 1
