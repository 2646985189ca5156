#include "Probe.h"

#include <gio/gio.h>
#include <glib.h>
#include <glib/gstdio.h>
#include <memory>

namespace {

void SetFlag(gpointer inFlag, gpointer) {
    *static_cast<std::atomic<bool>*>(inFlag) = true;
}

gboolean SetFlagOnLoop(gpointer inFlag) {
    SetFlag(inFlag, nullptr);
    return G_SOURCE_REMOVE;
}

void Sleep(gpointer, gpointer) {
    g_usleep(50000);
}

std::string Own(char* inText) { // null is empty
    std::string const text = inText != nullptr ? inText : "";
    g_free(inText);
    return text;
}

bool TurnedByPoll() {
    GMainContext* const context = g_main_context_new();
    g_main_context_acquire(context);
    std::atomic<bool> ran{false};
    GSource* const source = g_idle_source_new();
    g_source_set_callback(source, SetFlagOnLoop, &ran, nullptr);
    g_source_attach(source, context);
    for (int turn = 0; turn < 3 && !ran; ++turn) {
        int priority = 0, timeout = 0;
        GPollFD watched[8];
        g_main_context_prepare(context, &priority);
        int const count = g_main_context_query(context, priority, &timeout, watched, 8);
        g_poll(watched, static_cast<guint>(count), timeout);
        g_main_context_check(context, priority, watched, count);
        g_main_context_dispatch(context);
    }
    return ran;
}

} // namespace

bool UseLibrary() {
    std::atomic<bool> ran{false};
    GThreadPool* const pool = g_thread_pool_new(SetFlag, nullptr, 1, FALSE, nullptr);
    g_thread_pool_push(pool, &ran, nullptr);
    g_thread_pool_free(pool, FALSE, TRUE);
    return ran && Own(g_utf8_strup("a", -1)) == "A" && g_get_user_config_dir() != nullptr;
}

bool Save(std::string const& inPath, std::string const& inContent) {
    return g_file_set_contents_full(
        inPath.c_str(), inContent.data(), static_cast<gssize>(inContent.size()),
        static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT |
                                           G_FILE_SET_CONTENTS_DURABLE),
        0644, nullptr);
}

bool OpensWhatItLists(std::string const& inDirectory) {
    GDir* const dir = g_dir_open(inDirectory.c_str(), 0, nullptr);
    FILE* const file = g_fopen((inDirectory + "/" + g_dir_read_name(dir)).c_str(), "r");
    g_dir_close(dir);
    return file != nullptr && std::fclose(file) == 0;
}

void Rows() {
    FileRows();
    Row("Malformed UTF-8 becomes UTF-16 with U+FFFD, and is no failure",
        g_utf8_to_utf16("a\xFFz", -1, nullptr, nullptr, nullptr) != nullptr);
    Row("Unicode normalisation",
        Own(g_utf8_normalize("u\xCC\x88", -1, G_NORMALIZE_NFC)) == "\xC3\xBC");
    Row("Names sorted by the numbers in them",
        Own(g_utf8_collate_key_for_filename("clip 9", -1)) <
            Own(g_utf8_collate_key_for_filename("clip 10", -1)));
    Row("Regular expressions",
        g_regex_match_simple("^a+$", "aaa", GRegexCompileFlags(0), GRegexMatchFlags(0)) == TRUE);
    Row("Plurals in translated texts",
        std::string(g_dngettext(nullptr, "file", "files", 2)) == "files");
    GTimeSpan const frame = 1001 * G_TIME_SPAN_SECOND / 30000;
    Row("A duration holds a frame of 30000/1001 exactly",
        frame * 30000 == 1001 * G_TIME_SPAN_SECOND);
    GTimeZone* const paris = g_time_zone_new_identifier("Europe/Paris");
    Row("Time zones by name",
        paris != nullptr &&
            g_time_zone_get_offset(paris, g_time_zone_find_interval(paris, G_TIME_TYPE_UNIVERSAL,
                                                                    1593554400)) == 7200);

    GVariant* const value = g_variant_parse(nullptr, "{'a': <{'n': <int64 9007199254740993>}>}",
                                            nullptr, nullptr, nullptr);
    std::string const text = Own(g_variant_print(value, TRUE));
    GVariant* const again = g_variant_parse(nullptr, text.c_str(), nullptr, nullptr, nullptr);
    Row("Nested typed values as a text, 64-bit integers exact",
        g_variant_equal(value, again) == TRUE);
    GHashTable* const table = g_hash_table_new(g_str_hash, g_str_equal);
    g_hash_table_insert(table, const_cast<char*>("two"), GINT_TO_POINTER(2));
    Row("Hash maps of its own", GPOINTER_TO_INT(g_hash_table_lookup(table, "two")) == 2);
    GSocket* const socket =
        g_socket_new(G_SOCKET_FAMILY_IPV4, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_TCP, nullptr);
    Row("TCP sockets", socket != nullptr);

    std::atomic<bool> ran[2] = {{false}, {false}};
    GThreadPool* const pool = g_thread_pool_new(SetFlag, nullptr, 1, TRUE, nullptr);
    bool const isQueued =
        g_thread_pool_push(pool, &ran[0], nullptr) && g_thread_pool_push(pool, &ran[1], nullptr);
    Row("A pool of one thread takes many functions",
        isQueued && Await([&] { return ran[0] && ran[1]; }));
    GThreadPool* const sleeping = g_thread_pool_new(Sleep, nullptr, 1, TRUE, nullptr);
    for (int work = 1; work <= 100; ++work) {
        g_thread_pool_push(sleeping, GINT_TO_POINTER(work), nullptr);
    }
    auto const begin = std::chrono::steady_clock::now();
    g_thread_pool_free(sleeping, TRUE, TRUE);
    Row("What a pool has not begun can be cancelled",
        std::chrono::steady_clock::now() - begin < std::chrono::seconds(2));
    ForkRow([&](std::atomic<bool>& outRan) {
        return g_thread_pool_push(pool, &outRan, nullptr) == TRUE;
    });
    Row("Its queue can be turned by a foreign loop that polls", TurnedByPoll());
    void* const block = g_slice_alloc(32);
    Row("A small-block allocator", block != nullptr);
    g_slice_free1(32, block);
}
