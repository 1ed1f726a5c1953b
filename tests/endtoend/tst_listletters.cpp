// SPDX-License-Identifier: MIT
#include "tests/endtoend/letterscase.h"
int main() {}
