#include <brindle/console/Console.h>

#include "tests/debug/InPreferences.h"
#include "tests/support/Environment.h"

#include <brindle/console/Completion.h>
#include <brindle/filesupport/CommonDirs.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <locale>
#include <regex>

namespace brindle::console {

namespace {

using tests::AsUTF8;
using tests::InProcess;
using tests::Narrow;
using tests::Wide;

/// What a line prints, with line feeds for CR LF and "TIME" for times of files.
std::string OutputOf(std::string const& inLine) {
    std::basic_stringbuf<std::uint16_t> buffer;
    UTF16OutputStream out(&buffer);
    bool const isCommand = ExecuteCommand(Wide(inLine), out);
    auto text = Narrow(buffer.str());
    text = std::regex_replace(text, std::regex("\r\n"), "\n");
    return isCommand ? std::regex_replace(text, std::regex("\\b1[0-9]{17}\\b"), "TIME")
                     : text + "(no command)\n";
}

/// Executes each line in a process of its own that has only what is in the preference directory.
/// Returns the lines, behind "> ", and what they print.
std::string Transcript(std::initializer_list<std::string> const& inLines) {
    return InProcess([&] {
        Initialize();
        std::string transcript = "\n";
        for (auto const& line : inLines) {
            transcript += "> " + line + '\n' + OutputOf(line);
        }
        return transcript;
    });
}

class Commands : public tests::InPreferences {};

TEST_F(Commands, AreFoundByTheFirstWordOfALine) {
    EXPECT_EQ(Transcript({"", "   ", " debug.list", "\tDEBUG.Set\t   a=b \t", "debug.get\ta",
                          "debug.get   a  ", "debug.set a=b\t", "debug", "trace.get.master 1"}),
              R"(
> 
(no command)
>    
(no command)
>  debug.list
(no command)
> 	DEBUG.Set	   a=b 	
> debug.get	a
(no command)
> debug.get   a  
a = b
> debug.set a=b	
> debug
(no command)
> trace.get.master 1
Master trace volume is 10.
)");
}

TEST_F(Commands, ChangeTheDebugDatabase) {
    EXPECT_EQ(Transcript({"debug.list", "debug.get not there", "debug.get", "debug.set a=b",
                          "debug.set \t two words = a value = lost", "debug.set none", "debug.list",
                          "debug.clear", "debug.list", "debug.set k\u00E9y = \U0001F600"}),
              R"(
> debug.list
Listing contents of debug database!
-----------------------------------
> debug.get not there
not there = 
> debug.get
 = 
> debug.set a=b
> debug.set 	 two words = a value = lost
> debug.set none
> debug.list
Listing contents of debug database!
-----------------------------------
 = 
a = b
none = 
not there = 
two words = a value
> debug.clear
Clearing contents of debug database!
> debug.list
Listing contents of debug database!
-----------------------------------
> debug.set kéy = 😀
)");
    EXPECT_EQ(ContentOf(Preference("Debug Database.txt")), "k\u00E9y\t\U0001F600\n");
}

TEST_F(Commands, ChangeTraceVolumes) {
    EXPECT_EQ(Transcript({"trace.set cat 7", "trace.get cat", "trace.set \"two words\" 8",
                          "trace.get \"two words\"", "trace.get two words", "trace.set cat",
                          "trace.set \"two words\"", "trace.set cat  9", "trace.set cat -3 x",
                          "trace.set cat x", "trace.set cat 99999999999", "trace.set a\"b",
                          "trace.get.master", "trace.set.master +2", "trace.get.master",
                          "trace.set.master x", "trace.get.master", "trace.getcategories"}),
              R"(
> trace.set cat 7
trace category cat set to volume 7.
> trace.get cat
trace volume for category cat is 7.
> trace.set "two words" 8
trace category two words set to volume 8.
> trace.get "two words"
trace volume for category two words is 8.
> trace.get two words
trace volume for category two words is 8.
> trace.set cat
trace volume for category cat is 7.
> trace.set "two words"
trace volume for category two words is 8.
> trace.set cat  9
trace volume for category cat is 7.
> trace.set cat -3 x
trace category cat set to volume -3.
> trace.set cat x
trace category cat set to volume 0.
> trace.set cat 99999999999
trace category cat set to volume 0.
> trace.set a"b
trace volume for category b is 5.
> trace.get.master
Master trace volume is 10.
> trace.set.master +2
Master trace volume set to 2.
> trace.get.master
Master trace volume is 2.
> trace.set.master x
Master trace volume set to 0.
> trace.get.master
Master trace volume is 0.
> trace.getcategories
Trace Categories:
Master
b
cat
two words
)");
}

TEST_F(Commands, AreListedAndWritten) {
    // Also on a stream of a host that formats numbers its own way.
    EXPECT_EQ(InProcess([] {
                  struct Dots : std::numpunct<wchar_t> {
                      wchar_t do_thousands_sep() const override { return L'.'; }
                      std::string do_grouping() const override { return "\3"; }
                  };
                  std::locale::global(std::locale(std::locale::classic(), new Dots));
                  Initialize();
                  std::basic_stringbuf<std::uint16_t> buffer;
                  UTF16OutputStream out(&buffer);
                  out << std::hex;
                  ExecuteCommand(u"trace.set cat 1234567"_utf16, out);
                  ListCommands(out);
                  return '\n' + std::regex_replace(Narrow(buffer.str()), std::regex("\r\n"), "\n");
              }),
              R"(
trace category cat set to volume 1234567.
Currently installed commands.
-----------------------------
debug.clear - clears the contents of the debug database.
debug.get <variable path> - Gets the value of the debug variable from the debug database.
debug.list - displays the entire contents of the debug database.
debug.set <variable path> = <value> - Sets the value of the debug variable in the debug database.
filesupport.dir <file path> - given a path, echos the path and indicates if the directory exists
filesupport.file <file path> - given a file name, echos the path and indicates if the file exists
filesupport.listdirs - list the special directoriees.
filesupport.listvols - list the mounted volumes.
trace.get <category> - Gets the volume of this trace category.
trace.get.master - Gets the master trace volume. This is the highest volume that will be traced.
trace.getcategories - Lists all catagories that have been traced.
trace.set <category> <volume> - Sets the volume of this trace category.
trace.set.master <volume> - Sets the master trace volume. This is the highest volume that will be traced.

)");
}

TEST_F(Commands, PassExceptionsOn) {
    auto const level = mDirectory.substr(0, mDirectory.find('/'));
    std::filesystem::remove_all(Native(level));
    Fill(level, "no directory");
    auto const text = Transcript({"filesupport.listdirs"});
    EXPECT_EQ(text.substr(0, 10), "threw $$$/") << text;
}

/// What `filesupport.file` prints, with "@" for the temporary directory.
class FileCommands : public Commands {
protected:
    std::string Of(std::string const& inCommand, std::string const& inName) const {
        auto const path = Narrow(mTemporary.Path());
        auto text = InProcess([&] {
            Initialize();
            return '\n' + OutputOf(inCommand + ' ' + path + '\\' + inName);
        });
        for (std::size_t at = 0; (at = text.find(path)) != std::string::npos;) {
            text.replace(at, path.size(), "@");
        }
        auto const name = path.substr(path.rfind('\\') + 1);
        return std::regex_replace(text, std::regex(name), "TEMPORARY");
    }
};

TEST_F(FileCommands, ExerciseAFileThatDoesNotExist) {
    char const* const kDelete = R"(Threw file_exception
   $$$/brindle/filesupport/Delete=Could not delete the file '@0'.)";
    char const* const kMissing = R"(Threw file_exception
   $$$/brindle/filesupport/FileNotFound=The file '@0' could not be found.)";
    std::string const kBefore = std::string(R"(
File.FullPath: @\New.Txt
    not found.
   File.Created: )") + kMissing +
                                "\n   File.Modified: " + kMissing + R"(
 File.GetName: New.Txt
 File.GetTitle: New
 File.GetExtension: .Txt
 File.GetExtension toLower: .txt
     File.Delete: )" + kDelete + R"(
     File.Create: Succeeded
     File.Created: TIME
     File.Modified: TIME
     other = File
    other == File true
     other.Rename( 'house' ) )";
    std::string const kAfter = R"(
     other == File true
     File.Delete: Succeeded
 Parent.FullPath: @
    found
   Dir.Created: TIME
   Dir.Modified: TIME
 Dir.GetName: TEMPORARY

)";
    auto const before = EntryCount();
    EXPECT_EQ(Of("filesupport.file", "New.Txt"), kBefore + R"(Succeeded
     other == File false
     other.Rename( File.GetName() ) Succeeded)" + kAfter);
    EXPECT_EQ(EntryCount(), before) << "nothing is left";

    Fill("house", "kept");
    char const* const kRename = R"(Threw file_exception
   $$$/brindle/filesupport/Rename=Could not rename the file '@0' to '@1'.)";
    EXPECT_EQ(Of("filesupport.file", "New.Txt"), kBefore + kRename + R"(
     other == File true
     other.Rename( File.GetName() ) )" + kRename + kAfter);
    EXPECT_EQ(ContentOf("house"), "kept");
}

TEST_F(FileCommands, ExerciseADirectoryThatDoesNotExist) {
    auto const text = Of("filesupport.file", "new\\a");
    EXPECT_EQ(text.substr(text.find(" Parent.")), R"( Parent.FullPath: @\new
    not found
   Dir.Created: Threw dir_exception
   $$$/brindle/filesupport/DirNotFound=The directory '@0' could not be found.
   Dir.Modified: Threw dir_exception
   $$$/brindle/filesupport/DirNotFound=The directory '@0' could not be found.
 Dir.GetName: new
     Dir.Delete: Threw dir_exception
   $$$/brindle/filesupport/Dir/error=Error with Directory: '@0'.
     Dir.Create: Succeeded
     Dir.Created: TIME
     Dir.Modified: TIME
     otherDir = Dir
    otherDir == Dir true
     otherDir.Rename( 'house' ) Succeeded
     otherDir == Dir false
     otherDir.Rename( Dir.GetName() ) Succeeded
     otherDir == Dir true
     Dir.Delete: Succeeded

)");
}

TEST_F(FileCommands, LeaveWhatExistsAlone) {
    Fill("old", "content");
    EXPECT_EQ(Of("filesupport.file", "old"), R"(
File.FullPath: @\old
    found.
   File.Created: TIME
   File.Modified: TIME
 File.GetName: old
 File.GetTitle: old
 File.GetExtension: 
 File.GetExtension toLower: 
 Parent.FullPath: @
    found
   Dir.Created: TIME
   Dir.Modified: TIME
 Dir.GetName: TEMPORARY

)");
    EXPECT_EQ(ContentOf("old"), "content");
    EXPECT_EQ(Of("filesupport.dir", "old"), R"(
Directory Path: @\old
    not found.
 Dir Name: old
 Parent Path: @
    found
 Dir name: TEMPORARY

)");
}

TEST_F(Commands, ShowDirectoriesAndVolumes) {
    namespace commondirs = filesupport::commondirs;
    using filesupport::Dir;
    auto const set = [&](void (*inSetter)(Dir const&), char const* inPath) {
        inSetter(Dir(Wide(inPath)));
    };
    set(commondirs::SetAppDirOverride, "C:\\app");
    set(commondirs::SetExecutableDirOverride, "C:\\bin");
    set(commondirs::SetResourcesDirOverride, "C:\\share");
    set(commondirs::SetPluginsDirOverride, "C:\\plugins");
    set(commondirs::SetRequiredPluginsDirOverride, "C:\\required");
    auto const temporary = Narrow(mTemporary.Path());
    tests::Environment const environment({{"TMPDIR", mTemporary.Native()},
                                          {"HOME", mTemporary.Native()},
                                          {"XDG_DOCUMENTS_DIR", mTemporary.Native()}});
    Initialize();
    EXPECT_EQ(OutputOf("filesupport.listdirs"),
              "App Dir = \t\tC:\\app\nExecutable Dir = \t\tC:\\bin\nResources Dir = \t\tC:\\share\n"
              "Package Dir = \t\tC:\\app\nCommon Files Dir = \t\t" +
                  Narrow(Dir::CommonFilesDir().FullPath()) +
                  "\nPlugins Dir = \t\tC:\\plugins\nRequired Plugins Dir = \t\tC:\\required\n"
                  "User Docs Dir = \t\t" +
                  Narrow(Dir::UserDocsDir().FullPath()) + "\nTemp Dir = \t\t" + temporary +
                  "\nPref Dir = \t\t" + Narrow(Dir::PrefDir().FullPath()) +
                  "\nGlobal Pref Dir = \t\t" + temporary + '\n');
    auto const volumes = OutputOf("filesupport.listvols");
    EXPECT_EQ(volumes.find("List Volumes: \n  C:\n"), 0u) << volumes;
    Terminate();
}

TEST_F(Commands, ComeAndGoWithTheConsole) {
    EXPECT_EQ(InProcess([] {
                  Initialize();
                  auto text = OutputOf("debug.get a");
                  Terminate();
                  text += OutputOf("debug.get a") + OutputOf("debug.list");
                  Initialize();
                  Initialize();
                  return text + OutputOf("debug.get b");
              }),
              "a = \n(no command)\n(no command)\nb = \n");
}

TEST_F(Commands, AreCompleted) {
    Fill("apple", "");
    Fill(".hidden", "");
    std::filesystem::create_directories(Native("ap dir/in"));
    Transcript({"debug.set a.key=1", "debug.set a.second=1", "debug.set b key=1",
                "debug.set b\nfeed=1", "trace.set tree 1", "trace.set \"two words\" 1"});
    auto const temporary = mTemporary.Native();
    struct Case {
        std::string line; // the cursor is at "|"
        std::string completions;
    } const cases[] = {
        {"deb|", "0: debug.clear debug.get debug.list debug.set"},
        {"TRACE.GET|", "0: trace.get trace.get.master trace.getcategories"},
        {"debug.l|ist x", "0: debug.list"},
        {"nothing|", "0:"},
        {"nothing a|", "8:"},
        {"debug.get |", "10: a.key a.second b key"},
        {"DEBUG.set   b |= 1", "12: b key"},
        {"debug.set a.key = a|", "10:"},
        {"trace.get t|", "10: \"two words\" tree"},
        {"trace.set two w|", "10:"},
        {"trace.set \"tr|", "10: \"tree\""},
        {"trace.set \"tree\" |", "10:"},
        {"filesupport.dir " + temporary + "/a|", "16: " + temporary + "/ap dir/"},
        {"filesupport.dir " + temporary + "/ap dir/|", "16: " + temporary + "/ap dir/in/"},
        {"filesupport.file " + temporary + "/ap|",
         "17: " + temporary + "/ap dir/ " + temporary + "/apple"},
        {"filesupport.file " + temporary + "/.hid|", "17: " + temporary + "/.hidden"},
        {"filesupport.file C|", "17: C:\\"},
        {"filesupport.file /no/such/|", "17:"},
    };
    for (auto const& each : cases) {
        SCOPED_TRACE(each.line);
        EXPECT_EQ(InProcess([&] {
                      Initialize();
                      auto line = each.line;
                      auto const cursor = line.find('|');
                      auto const found = CompleteLine(AsUTF8(line.erase(cursor, 1)), cursor);
                      auto text = std::to_string(found.start) + ':';
                      for (auto const& candidate : found.candidates) {
                          text += ' ' + Narrow(candidate);
                      }
                      return text;
                  }),
                  each.completions);
    }
}

} // namespace

} // namespace brindle::console
