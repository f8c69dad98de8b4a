// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xapp.h"

ZEL_IMPLEMENT_RUNTIME_CLASS(CXApp, CXObject, RuntimeClassNotSerializable)
