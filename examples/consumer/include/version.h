#define APP_MAJOR 2
#define APP_MINOR 5
#define APP_BUILD 1017
