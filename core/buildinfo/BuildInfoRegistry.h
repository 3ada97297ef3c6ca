#pragma once

#include <vector>

#include "core/buildinfo/BuildRecord.h"

namespace Quenda {

class Writable;

// The program's name and the build records of the libraries in this process (runtime records). A
// program may add the records of the libraries that it was built against (buildtime records).
//
// A record is printed with a mark: "?" when there is no buildtime record of its name, "!" when
// that one differs, a blank when it is equal. Printing to null prints nothing.
class BuildInfoRegistry {
public:
    // The process's registry, built on first use and destroyed at exit.
    static BuildInfoRegistry& Instance();

    BuildInfoRegistry() = default;
    BuildInfoRegistry(const BuildInfoRegistry&) = delete;
    BuildInfoRegistry& operator=(const BuildInfoRegistry&) = delete;

    // Keeps the pointer, not a copy. The name is "UnsetApplicationName" until it is set.
    void SetApplicationName(const char* name) { applicationName_ = name; }
    const char* GetApplicationName() const { return applicationName_; }

    // Keeps a copy. A second record of the same name is ignored.
    void AddRuntimeRecord(const BuildRecord& record) { Add(runtimeRecords_, record); }
    void AddBuildtimeRecord(const BuildRecord& record) { Add(buildtimeRecords_, record); }

    // Null when there is none of that name.
    const BuildRecord* FindRuntime(const char* name) const { return Find(runtimeRecords_, name); }
    const BuildRecord* FindBuildtime(const char* name) const {
        return Find(buildtimeRecords_, name);
    }

    // Prints the version, or all fields, of the runtime record of that name; null means all.
    void PrintSummary(Writable* out, const char* name = nullptr) const { Print(out, name, false); }
    void PrintDetails(Writable* out, const char* name = nullptr) const { Print(out, name, true); }

private:
    using Records = std::vector<BuildRecord>;

    static void Add(Records& records, const BuildRecord& record);
    static const BuildRecord* Find(const Records& records, const char* name);
    char Mark(const BuildRecord& record) const;
    void Print(Writable* out, const char* name, bool details) const;
    void PrintVersion(Writable* out, const BuildRecord& record) const;
    void PrintFields(Writable* out, const BuildRecord& record) const;

    const char* applicationName_ = "UnsetApplicationName";
    Records buildtimeRecords_;
    Records runtimeRecords_;
};

}  // namespace Quenda
