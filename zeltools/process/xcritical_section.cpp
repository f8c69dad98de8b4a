// SPDX-License-Identifier: MIT
#include "zeltools/process/xcritical_section.h"

CXCriticalSection::~CXCriticalSection() = default;
