#include "Probe.h"

#include <absl/container/flat_hash_map.h>
#include <absl/strings/str_format.h>
#include <absl/synchronization/mutex.h>
#include <absl/time/civil_time.h>
#include <absl/time/clock.h>
#include <absl/time/time.h>

// There are no files, pools and texts of units in this library, so many of the rows are "no" by
// what the headers lack.

bool UseLibrary() {
    static absl::Mutex mutex;
    absl::MutexLock const lock(&mutex);
    absl::flat_hash_map<std::string, int> map{{"two", 2}};
    return absl::StrFormat("%d", map["two"]) == "2" && absl::Now() > absl::UnixEpoch() &&
           !absl::FormatTime(absl::Now()).empty();
}

bool Save(std::string const&, std::string const&) {
    return false;
}

bool OpensWhatItLists(std::string const&) {
    return false;
}

void Rows() {
    Row("A duration holds a frame of 30000/1001 exactly",
        30000 * (absl::Seconds(1001) / 30000) == absl::Seconds(1001));
    absl::TimeZone paris;
    Row("Time zones by name",
        absl::LoadTimeZone("Europe/Paris", &paris) &&
            paris.At(absl::CivilSecond(2020, 7, 1)).pre == absl::FromUnixSeconds(1593554400));
    absl::flat_hash_map<std::string, int> const map{{"two", 2}};
    Row("Hash maps of its own", map.at("two") == 2);
}
