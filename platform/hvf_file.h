#pragma once

// The handle of an open value file, shared by the writing and the reading halves.

#include <pt_platform/hvf.h>

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "deflate_stream.h"
#include "save_target.h"

struct hvFile {
    bool writing = false;

    // Reading: the uncompressed content, and where in it each variable's value lies.
    struct Variable {
        std::size_t offset;
        std::size_t size;
    };
    std::map<std::string, Variable> variables;
    std::vector<unsigned char> content;

    // Writing.
    pt::platform::SaveTarget target;
    /// The compressed bytes for a target written in place, which cannot be written at any
    /// position: it gets header, stream and checksum in order at the close.
    std::vector<unsigned char> held;
    std::unique_ptr<pt::platform::DeflateStream> stream;
    std::set<std::string> written;
    bool failed = false;
};

namespace pt::platform {

/// Opens a file for reading, checked whole; null if it is no sound value file.
hvFile* openForReading(const char* path);

}  // namespace pt::platform
