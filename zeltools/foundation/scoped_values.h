// SPDX-License-Identifier: MIT
// Variables that change for the length of a scope, however it is left.
//
//     int depth = 0;
//     {
//         CPopValue inside(&depth);       // depth is 1 here
//     }                                   // and 0 again
//
// Threads: one at a time. The variable outlives the object.

#pragma once

/// Adds 1 to a variable, and takes it off again at the end.
class CPopValue {
public:
    explicit CPopValue(int* variable) : value(variable) { ++*value; }
    virtual ~CPopValue() { --*value; }
    CPopValue(CPopValue const&) = delete;
    CPopValue& operator=(CPopValue const&) = delete;

private:
    int* value;
};

/// Stores a value in a variable at the end.
class CBoolReset {
public:
    explicit CBoolReset(bool* variable, bool finalValue = false) : target(variable), value(finalValue) {}
    ~CBoolReset() { *target = value; }
    CBoolReset(CBoolReset const&) = delete;
    CBoolReset& operator=(CBoolReset const&) = delete;

private:
    bool* target;
    bool value;
};

/// Inverts a variable, and inverts it again at the end.
class CBoolSwitch {
public:
    explicit CBoolSwitch(bool* variable) : target(variable) { *target = !*target; }
    ~CBoolSwitch() { *target = !*target; }
    CBoolSwitch(CBoolSwitch const&) = delete;
    CBoolSwitch& operator=(CBoolSwitch const&) = delete;

private:
    bool* target;
};
