#pragma once

#include "core/options/OptionsNodeEdit.h"

// An options document to try things on:
//   {"name": "terminal", "modem": {"band": "L", "power": 5}, "ports": [{"port": 1, "rate": 9600}]}
class OptionsDesk {
public:
    OptionsDesk();

    // "print [NAME...]", "set NAME VALUE", "overlay NAME VALUE", "merge PORT RATE". A VALUE of
    // digits alone is a number.
    void Command(Quenda::Writable* out, int argc, const char* const* argv);

private:
    bool Set(const char* name, const char* value);
    // Lays {"modem": {NAME: VALUE}} over the document.
    bool Overlay(const char* name, const char* value);
    // Merges {"ports": [{"port": PORT, "rate": RATE}]}: changes that port's rate, or adds the port.
    bool Merge(const char* port, const char* rate);

    Quenda::OptionsNodeEdit document_;  // holds its value itself
};
