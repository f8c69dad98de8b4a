// SPDX-License-Identifier: MIT
// Marks what the media library exports.

#pragma once

#define ZEL_MEDIA_API __attribute__((visibility("default")))
