#include "Probe.h"

#include <absl/container/flat_hash_map.h>
#include <absl/strings/str_format.h>
#include <absl/synchronization/mutex.h>
#include <absl/time/clock.h>
#include <absl/time/time.h>

bool UseLibrary() {
    static absl::Mutex mutex;
    absl::MutexLock const lock(&mutex);
    absl::flat_hash_map<std::string, int> map{{"two", 2}};
    return absl::StrFormat("%d", map["two"]) == "2" && !absl::FormatTime(absl::Now()).empty();
}

// This library has no files.
bool Save(std::string const&, std::string const&) {
    return false;
}
bool OpensWhatItLists(std::string const&) {
    return false;
}

void Rows() {
    Row("A duration holds a frame of 30000/1001 exactly",
        30000 * (absl::Seconds(1001) / 30000) == absl::Seconds(1001));
}
