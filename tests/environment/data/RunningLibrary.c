#include <stdlib.h>

/* Leaves a mark in any process that runs its code. */
__attribute__((constructor)) static void Ran(void) {
  setenv("TW_TEST_LIBRARY_RAN", "1", 1);
}
