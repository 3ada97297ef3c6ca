#include "core/buildinfo/BuildInfoRegistry.h"

#include <cstring>

#include "core/output/Writable.h"

namespace Quenda {

BuildInfoRegistry& BuildInfoRegistry::Instance() {
    static BuildInfoRegistry instance;
    return instance;
}

void BuildInfoRegistry::Add(Records& records, const BuildRecord& record) {
    if (Find(records, record.name) == nullptr) {
        records.push_back(record);
    }
}

const BuildRecord* BuildInfoRegistry::Find(const Records& records, const char* name) {
    for (const BuildRecord& record : records) {
        if (strcmp(record.name, name) == 0) {
            return &record;
        }
    }
    return nullptr;
}

char BuildInfoRegistry::Mark(const BuildRecord& record) const {
    const BuildRecord* const buildtime = FindBuildtime(record.name);
    if (buildtime == nullptr) {
        return '?';
    }
    return *buildtime == record ? ' ' : '!';
}

void BuildInfoRegistry::Print(Writable* out, const char* name, bool details) const {
    if (out == nullptr) {
        return;
    }
    out->Printf("Application: %s\n", applicationName_);
    if (name != nullptr && FindRuntime(name) == nullptr) {
        out->Printf("Unable to find \"%s\"\n", name);
    }
    for (const BuildRecord& record : runtimeRecords_) {
        if (name == nullptr || strcmp(record.name, name) == 0) {
            details ? PrintFields(out, record) : PrintVersion(out, record);
        }
    }
}

void BuildInfoRegistry::PrintVersion(Writable* out, const BuildRecord& record) const {
    out->Printf("[%c] %s\t%s: %s\n", Mark(record), record.name, BuildFieldLabel(0),
                record.fields[0]);
}

void BuildInfoRegistry::PrintFields(Writable* out, const BuildRecord& runtime) const {
    const BuildRecord* const buildtime = FindBuildtime(runtime.name);
    const auto printValues = [&](const BuildRecord& record) {
        for (size_t i = 0; i < BuildRecord::kFieldCount; ++i) {
            const bool differs =
                buildtime != nullptr && strcmp(runtime.fields[i], buildtime->fields[i]) != 0;
            out->Printf("%c\t%s: %s\n", differs ? '!' : ' ', BuildFieldLabel(i), record.fields[i]);
        }
    };
    out->Printf("[%c] %s\n", Mark(runtime), runtime.name);
    out->Printf("[runtime]\n");
    printValues(runtime);
    out->Printf("[buildtime]\n");
    if (buildtime == nullptr) {
        out->Printf("\tInformation not available!\n");
    } else {
        printValues(*buildtime);
    }
}

}  // namespace Quenda
