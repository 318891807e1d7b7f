#define WIDTH integer
