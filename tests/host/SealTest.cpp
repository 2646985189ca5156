#include "tests/host/Command.h"
#include "tests/support/BitwiseCRC.h"
#include "tests/support/Text.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <thread>

namespace brindle::host {

namespace {

namespace fs = std::filesystem;

class Seal : public tests::Command {
protected:
    Seal() { fs::create_directory(Native("tree")); }

    void MakeFile(std::string const& inPath, std::string const& inContent) const {
        fs::create_directories(fs::path(Native(inPath)).parent_path());
        Fill(inPath, inContent);
    }

    /// The output of `verify` for an unchanged tree.
    static std::string Clean(std::size_t inCount) {
        return std::to_string(inCount) + (inCount == 1 ? " file" : " files") +
               ": 0 changed, 0 missing, 0 new, 0 unreadable\n";
    }
};

TEST_F(Seal, RecordsEveryNameReadablyAndWithoutLoss) {
    std::map<std::string, std::string> const keys = {
        {"plain", "plain"},
        {"a/b/\xC3\xA4 \xE6\x97\xA5 \xF0\x9F\x8E\xAC",
         "a/b/\xC3\xA4 \xE6\x97\xA5 \xF0\x9F\x8E\xAC"},
        {"a.b", "a.b"},
        {"- <&>'\"]]> ", "- &lt;&amp;&gt;&apos;&quot;]]&gt; "},
        {"100%", "100%25"},
        {"%41", "%2541"},
        {"new\nline\r\t\x1B\x7F", "new%0Aline%0D%09%1B%7F"},
        {"\xFF\xC3 \xC0\x80 \xED\xA0\x80 \xF4\x90\x80\x80", "%FF%C3 %C0%80 %ED%A0%80 %F4%90%80%80"},
        {"\xEF\xBF\xBD\xEF\xBF\xBE\xEF\xBF\xBF \xC2\x85\xC2\xA0",
         "\xEF\xBF\xBD%EF%BF%BE%EF%BF%BF %C2%85\xC2\xA0"},
        {"back\\slash \xEF\x81\x9C", "back\\slash \xEF\x81\x9C"},
        {"cut \xE6\x97", "cut %E6%97"},
        {".hidden", ".hidden"}};
    for (auto const& [name, key] : keys) {
        std::string const content = "content of " + name;
        MakeFile("tree/" + name, content);
        timespec const times[2] = {{}, {951'782'399, 123'456'789}};
        ASSERT_EQ(::utimensat(AT_FDCWD, Native("tree/" + name).c_str(), times, 0), 0);
    }
    Expect("seal tree");
    std::string document = ContentOf("tree/brindle-seal.xml");
    for (char const lineEnd : {'\r', '\n'}) {
        document.erase(std::remove(document.begin(), document.end(), lineEnd), document.end());
    }
    for (auto const& [name, key] : keys) {
        std::string const content = "content of " + name;
        char crc[9];
        std::snprintf(crc, sizeof crc, "%08x",
                      tests::BitwiseCRC(tests::Bytes(content), content.size()));
        std::string const entry =
            "<key>" + key + "</key><prop.list><prop.pair><key>crc</key><string>" + crc +
            "</string></prop.pair><prop.pair><key>modified</key>"
            "<string>2000-02-28T23:59:59.1234567Z</string></prop.pair><prop.pair><key>size</key>"
            "<int type='unsigned' size='64'>" +
            std::to_string(content.size()) + "</int></prop.pair></prop.list>";
        EXPECT_NE(document.find(entry), std::string::npos) << entry;
    }
    Expect("verify tree/brindle-seal.xml", Clean(keys.size()));
}

TEST_F(Seal, HoldsAfterTreeAndManifestAreMovedOrSealedAgain) {
    MakeFile("tree/file", "1");
    MakeFile("tree/sub/brindle-seal.xml", "not the manifest, in spite of its name");
    fs::create_directory(Native("lists"));
    Expect("seal tree");
    fs::create_symlink("../lists/old.xml", Native("tree/link.xml"));
    Expect("seal tree/ --output=tree/link.xml --jobs=1");
    EXPECT_TRUE(fs::is_symlink(Native("tree/link.xml")));
    fs::create_directory(Native("moved"));
    for (char const* const name : {"tree", "lists"}) {
        fs::rename(Native(name), Native(std::string("moved/") + name));
    }
    Expect("verify moved/tree/link.xml", Clean(3));
    fs::remove(Native("moved/tree/link.xml"));
    Expect("verify moved/tree/brindle-seal.xml", Clean(2));
    Expect("verify --root=moved/tree moved/lists/old.xml", Clean(3));
    fs::remove_all(Native("moved/lists"));

    // A link to the manifest counts as the manifest; a hard link keeps the older version.
    fs::create_symlink("../brindle-seal.xml", Native("moved/tree/sub/link"));
    fs::create_hard_link(Native("moved/tree/brindle-seal.xml"), Native("moved/tree/second"));
    for (char const* const words : {"seal .", "seal ../tree --output=sub/link"}) {
        std::string const in = "cd '" + Native("moved/tree") + "' && ";
        ASSERT_EQ(std::system((in + BRINDLE_COMMAND " " + words).c_str()), 0);
        Expect("verify moved/tree/sub/link", Clean(3));
    }
    fs::create_directory_symlink("moved/tree", Native("other"));
    Expect("seal other");
    Expect("verify other/brindle-seal.xml --root=other", Clean(3));
}

TEST_F(Seal, VerifyNamesChangedMissingAndNewFiles) {
    for (std::string const name :
         {"changed", "dir/kept", "grown", "gone", "touched", "x\ny", "fifo"}) {
        MakeFile("tree/" + name, "content of " + name);
    }
    Expect("seal tree");

    auto const time = fs::last_write_time(Native("tree/changed"));
    Fill("tree/changed", "Content of changed");
    fs::last_write_time(Native("tree/changed"), time);
    Fill("tree/grown", "content of grown.");
    Fill("tree/touched", "content of touched");
    fs::last_write_time(Native("tree/touched"), time + std::chrono::hours(1));
    for (char const* const name : {"gone", "x\ny", "fifo"}) {
        fs::remove(Native(std::string("tree/") + name));
    }
    ASSERT_EQ(mknod(Native("tree/fifo").c_str(), S_IFIFO | 0600, 0), 0);
    MakeFile("tree/dir/new\\one", "");
    MakeFile("tree/dir.new", "");
    for (char const* const words : {"", " --jobs=1", " --jobs=3"}) {
        Expect(std::string("verify tree/brindle-seal.xml") + words,
               "changed changed\nnew dir.new\nnew dir/new\\\\one\nchanged fifo\nmissing gone\n"
               "changed grown\nmissing x\\ny\n7 files: 3 changed, 2 missing, 2 new, 0 unreadable\n",
               1);
    }
    fs::permissions(Native("tree/dir"), fs::perms::none);
    Outcome const verified = RunUnprivileged("verify tree/brindle-seal.xml");
    Outcome const sealed = RunUnprivileged("seal tree/dir --output=tree/brindle-seal.xml");
    fs::permissions(Native("tree/dir"), fs::perms::all);
    EXPECT_NE(verified.output.find("7 files: 3 changed, 2 missing, 1 new, 1 unreadable\n"),
              std::string::npos);
    EXPECT_EQ(verified.errors,
              "brindle: " + Native("tree/dir") + ": the directory cannot be read\n");
    EXPECT_EQ(sealed.errors, "brindle: tree/dir/: the directory cannot be read\n");
    EXPECT_NE(ContentOf("tree/brindle-seal.xml").find(">grown<"), std::string::npos)
        << "sealed over";
}

TEST_F(Seal, AnUnchangedTreeVerifiesWhateverItHolds) {
    MakeFile("tree/plain", "plain");
    MakeFile("tree/secret", "secret");
    MakeFile("tree/closed/file", "");
    fs::create_symlink("nowhere", Native("tree/dangling"));
    fs::create_symlink("/dev/null", Native("tree/device"));
    fs::create_symlink("loop", Native("tree/loop"));
    ASSERT_EQ(mkfifo(Native("tree/fifo").c_str(), 0600), 0);
    ASSERT_EQ(mknod(Native("tree/socket").c_str(), S_IFSOCK | 0600, 0), 0);
    fs::permissions(Native("tree/secret"), fs::perms::none);
    fs::permissions(Native("tree/closed"), fs::perms::none);
    Outcome const sealed = RunUnprivileged("seal tree");
    EXPECT_EQ(sealed.status, 1) << "three cannot be read";
    EXPECT_EQ(std::count(sealed.errors.begin(), sealed.errors.end(), '\n'), 3) << sealed.errors;
    Outcome const unchanged = RunUnprivileged("verify tree/brindle-seal.xml");
    EXPECT_EQ(unchanged.status, 0);
    EXPECT_EQ(unchanged.output, Clean(7));
    EXPECT_EQ(unchanged.errors, "");

    fs::permissions(Native("tree/secret"), fs::perms::owner_read);
    fs::permissions(Native("tree/closed"), fs::perms::all);
    fs::remove(Native("tree/socket"));
    fs::remove(Native("tree/device"));
    fs::create_symlink("nowhere", Native("tree/device"));
    fs::remove(Native("tree/dangling"));
    MakeFile("tree/dangling", "");
    Outcome const changed = RunUnprivileged("verify tree/brindle-seal.xml");
    EXPECT_EQ(changed.output, "changed closed\nnew closed/file\nchanged dangling\nchanged device\n"
                              "changed secret\nmissing socket\n"
                              "7 files: 4 changed, 1 missing, 1 new, 0 unreadable\n");
}

TEST_F(Seal, AManifestMayPassThroughStandardStreams) {
    MakeFile("tree/file", "1");
    MakeFile("tree/-", "2");
    Expect("seal tree");
    Expect("verify tree", Clean(2));
    fs::remove(Native("tree/brindle-seal.xml"));
    Outcome const sealed = Run("seal tree --output=-");
    EXPECT_EQ(sealed.status, 0);
    Fill("m.xml", sealed.output);
    Expect("verify - <m.xml", Clean(2));
}

TEST_F(Seal, LeavesOutFilesThatChangeWhileTheyAreRead) {
    MakeFile("tree/still", "");
    MakeFile("tree/busy", "");
    fs::resize_file(Native("tree/busy"), 1u << 27); // it takes long enough to be touched meanwhile
    std::atomic<bool> isSealed{false};
    std::thread toucher([&] {
        while (!isSealed) {
            fs::last_write_time(Native("tree/busy"), fs::file_time_type::clock::now());
        }
    });
    ExpectFailure("seal tree", "tree/busy: changed while it was read");
    isSealed = true;
    toucher.join();
    Expect("verify tree/brindle-seal.xml",
           "new busy\n1 file: 0 changed, 0 missing, 1 new, 0 unreadable\n", 1);
}

TEST_F(Seal, AManifestFromElsewhereIsNotTrusted) {
    MakeFile("tree/link/secret", "secret");
    Expect("seal tree --output=m.xml");
    std::string const good = ContentOf("m.xml");
    auto const write = [&](std::string const& inOld, std::string const& inNew) {
        std::size_t const place = good.find(inOld);
        ASSERT_NE(place, std::string::npos) << inOld;
        Fill("m.xml", std::string(good).replace(place, inOld.size(), inNew));
    };
    std::string const path = "' is no path below the root";
    std::string const wrong = " of 'link/secret' is missing or wrong";
    std::string const others = "<key>others</key>\n<prop.list>\n";
    std::string const other = "<prop.pair><key>link/secret</key>";
    std::vector<std::array<std::string, 3>> lies = {
        {"'unsigned' size='64'>6<", "'signed' size='64'>6<", "the size" + wrong},
        {"<key>size<", "<key>Size<", "the size" + wrong},
        {"<key>crc<", "<key>CRC<", "the crc" + wrong},
        {"<key>modified<", "<key>modifie<", "the time" + wrong},
        {"Z<", "<", "the time" + wrong},
        {"<string>20", "<string>", "the time" + wrong},
        {"<key>format<", "<key>form<", "it has no format number"},
        {"size='32'>1<", "size='32'>2<", "its format 2 is not known"},
        {"<key>root<", "<key>roo<", "its root is missing or wrong"},
        {"<string>tree<", "<string><", "its root is missing or wrong"},
        {"<key>files<", "<key>fil<", "it has no list of files"},
        {others, others + other + "<string>fifo</string></prop.pair>",
         "it has 'link/secret' twice"},
        {others, others + other + "<string>pipe</string></prop.pair>",
         "what 'link/secret' is, is missing or unknown"},
        {others, others + other + "<true/></prop.pair>",
         "what 'link/secret' is, is missing or unknown"}};
    for (std::string const name :
         {"../outside", "..", ".", "", "/etc/passwd", "a//b", "a/", "./a", "a/../../b", "a/./b",
          "link%2Fsecret", "100%", "%0a", "%0", "a%00b"}) {
        lies.push_back({"link/secret", name, "'" + name + path});
    }
    for (std::string const crc :
         {"xyz", "5CEBAB9F", "5cebab9", "05cebab9f", "-5cebab9", " 5cebab9", "0x5cebab"}) {
        std::size_t const at = good.find("<string>", good.find("<key>crc</key>"));
        lies.push_back({good.substr(at, 16), "<string>" + crc, "the crc" + wrong});
    }
    for (auto const& [told, instead, reason] : lies) {
        write(told, instead);
        ExpectFailure("verify m.xml", "m.xml: is no manifest: " + reason);
    }
    write("version='4'", "version='5'");
    ExpectFailure("verify m.xml", "m.xml: is a property list of a later version");
    for (std::size_t length = 0; length + 2 < good.size(); length += 41) {
        Fill("m.xml", good.substr(0, length));
        Outcome const cut = Run("verify m.xml");
        EXPECT_EQ(cut.status, 1) << length;
        EXPECT_EQ(cut.errors.find("brindle: m.xml: cannot be read as a property list: line "), 0u);
    }

    // A path that leads through a link to a directory is not followed.
    Fill("m.xml", good);
    fs::rename(Native("tree/link"), Native("outside"));
    fs::create_directory_symlink("../outside", Native("tree/link"));
    Expect("verify m.xml",
           "missing link/secret\n1 file: 0 changed, 1 missing, 0 new, 0 unreadable\n", 1);
}

TEST_F(Seal, AFailureLeavesTheOldManifest) {
    MakeFile("tree/file", "1");
    Expect("seal tree --output=m.xml");
    std::string const before = ContentOf("m.xml");
    std::pair<char const*, char const*> const rows[] = {
        {"seal nowhere --output=m.xml", "nowhere: no such directory"},
        {"seal m.xml --output=m.xml", "m.xml: no such directory"},
        {"seal tree --output=tree", "tree: is no regular file, so it is not replaced"},
        {"seal tree --output=/dev/null", "/dev/null: is no regular file, so it is not replaced"},
        {"seal tree --output=no/m.xml", "no/m.xml: there is no such directory to write to"},
        {"seal tree --output=/proc/m.xml", "/proc/m.xml: no such file or directory"},
        {"verify nowhere", "nowhere: no such file or directory"},
        {"verify tree", "tree/brindle-seal.xml: no such file or directory"},
        {"verify m.xml --root=nowhere", "nowhere: no such directory"}};
    for (auto const& [words, diagnostic] : rows) {
        ExpectFailure(words, diagnostic);
    }
    EXPECT_EQ(ContentOf("m.xml"), before);
    Expect("verify m.xml", Clean(1));
    for (char const* const words :
         {"seal", "seal a b", "seal --help=x", "seal --output= tree", "seal tree --output",
          "seal --root=x tree", "seal --jobs=0 tree", "verify", "verify a b",
          "verify --root= m.xml", "verify --jobs=x m.xml"}) {
        ExpectWrongUsage(words);
    }
}

} // namespace

} // namespace brindle::host
