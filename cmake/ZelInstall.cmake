# SPDX-License-Identifier: MIT
# What `cmake --install` lays down: headers, library, CMake package, pkg-config file.
