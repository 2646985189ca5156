#include "Probe.h"

#include <glib.h>
#include <glib/gstdio.h>

namespace {

void Count(gpointer inCounter, gpointer) {
    ++*static_cast<std::atomic<int>*>(inCounter);
}

} // namespace

bool UseLibrary() {
    std::atomic<int> count{0};
    GThreadPool* const pool = g_thread_pool_new(Count, nullptr, 1, FALSE, nullptr);
    g_thread_pool_push(pool, &count, nullptr);
    g_thread_pool_free(pool, FALSE, TRUE);
    char* const text = g_utf8_strup("a", -1);
    bool const isUpper = std::string(text) == "A";
    g_free(text);
    return count == 1 && isUpper && g_get_user_config_dir() != nullptr;
}

bool Save(std::string const& inPath, std::string const& inContent) {
    auto const flags = G_FILE_SET_CONTENTS_CONSISTENT | G_FILE_SET_CONTENTS_DURABLE;
    return g_file_set_contents_full(inPath.c_str(), inContent.data(),
                                    static_cast<gssize>(inContent.size()),
                                    static_cast<GFileSetContentsFlags>(flags), 0644, nullptr);
}

bool OpensWhatItLists(std::string const& inDirectory) {
    GDir* const dir = g_dir_open(inDirectory.c_str(), 0, nullptr);
    FILE* const file = g_fopen((inDirectory + "/" + g_dir_read_name(dir)).c_str(), "r");
    g_dir_close(dir);
    return file != nullptr && std::fclose(file) == 0;
}

void Rows() {
    FileRows();
    Row("Malformed UTF-8 converts to UTF-16, with U+FFFD in its place",
        g_utf8_to_utf16("a\xFFz", -1, nullptr, nullptr, nullptr) != nullptr);
    GTimeSpan const frame = 1001 * G_TIME_SPAN_SECOND / 30000;
    Row("A duration holds a frame of 30000/1001 exactly",
        frame * 30000 == 1001 * G_TIME_SPAN_SECOND);

    GThreadPool* const pool = g_thread_pool_new(Count, nullptr, 1, TRUE, nullptr);
    PoolRows([&](std::atomic<int>& outCalls) {
        return g_thread_pool_push(pool, &outCalls, nullptr) == TRUE;
    });
}
