// SPDX-License-Identifier: MIT
// zel with files that it opens: what their parsers do, the files say (test_plugin/test_plugin.cpp).

#include "zel_fixture.h"

TEST_F(Zel, Nothing) {}
