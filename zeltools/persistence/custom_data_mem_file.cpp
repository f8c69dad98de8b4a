// SPDX-License-Identifier: MIT
#include "zeltools/persistence/custom_data_mem_file.h"

ZEL_IMPLEMENT_RUNTIME_CLASS(CCustomDataMemFile, CXMemFile, RuntimeClassNotSerializable)
