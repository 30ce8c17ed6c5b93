#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#define DOCTEST_CONFIG_NO_MULTITHREADING // the Windows compiler may come without threads
#include <doctest/doctest.h>
