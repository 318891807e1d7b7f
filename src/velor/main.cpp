#include <cstdio>

int main() {
    std::fputs("???  usage: missing resource TEXT(128)\n", stderr);
    return 0;
}
