// Include this only in the source file that defines a library's build record: the texts change with
// every commit.
#pragma once

#include "BuildData.h"
#include "core/buildinfo/BuildRecord.h"

// The record of the library `library` (a string literal).
#define QUENDA_BUILD_RECORD(library)                                                            \
    Quenda::BuildRecord {                                                                       \
        library, {                                                                              \
            BUILD_VERSION, library "-" BUILD_VERSION "-" BUILD_NUMBER, BUILD_USER, BUILD_HOST,  \
                BUILD_TIMESTAMP, BUILD_BRANCH, BUILD_HASH, BUILD_LOCAL_CHANGES, BUILD_PLATFORM, \
                BUILD_COMPILER, BUILD_KERNEL, BUILD_COMMENT                                     \
        }                                                                                       \
    }
