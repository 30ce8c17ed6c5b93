#include <cstdio>

int main() {
  std::puts("A light in the window.");
}
