#include "console/src/commands/FileSupportCommands.h"

#include "console/src/commands/EndLine.h"

#include <brindle/filesupport/CommonDirs.h>
#include <brindle/filesupport/DirectoryIterators.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/utility/Numbers.h>
#include <brindle/utility/Unicode.h>

namespace brindle::console::commands::filesupport {

using namespace brindle::filesupport;

namespace {

/// Prints what single operations on the file system give. An operation that fails is part of the
/// output, and the next one follows.
class Steps {
public:
    explicit Steps(UTF16OutputStream& ioOut) : mOut(ioOut) {}

    void Line(char16_t const* inText) { mOut << inText << EndLine; }

    /// Prints the label, and then the text that `inOperation` returns or the exception that it
    /// throws.
    template <typename Operation>
    void Print(char16_t const* inLabel, Operation const& inOperation) {
        mOut << inLabel;
        UTF16String outcome;
        try {
            outcome = inOperation();
        } catch (file_exception const& exception) {
            outcome = Thrown(u"file_exception", exception);
        } catch (dir_exception const& exception) {
            outcome = Thrown(u"dir_exception", exception);
        } catch (...) {
            outcome = u"Threw"_utf16;
        }
        mOut << outcome << EndLine;
    }

    /// Prints the time that `inOperation` returns.
    template <typename Operation>
    void PrintTime(char16_t const* inLabel, Operation const& inOperation) {
        Print(inLabel, [&] { return utility::NumberToString(inOperation()); });
    }

    /// Prints that `inOperation` has succeeded.
    template <typename Operation>
    void Try(char16_t const* inLabel, Operation const& inOperation) {
        Print(inLabel, [&] {
            inOperation();
            return u"Succeeded"_utf16;
        });
    }

private:
    static UTF16String Thrown(char16_t const* inClass, std::exception const& inException) {
        oUTF16StringStream text;
        text << u"Threw " << inClass << u"\r\n   " << utility::AsciiToUTF16(inException.what());
        return text.str();
    }

    UTF16OutputStream& mOut;
};

/// What the exercise prints in front of the outcome of each step.
struct ExerciseLabels {
    char16_t const* remove;
    char16_t const* create;
    char16_t const* created;
    char16_t const* modified;
    char16_t const* copy;
    char16_t const* isEqualAtFirst;
    char16_t const* rename;
    char16_t const* isEqual;
    char16_t const* renameBack;
};

constexpr ExerciseLabels kFileLabels = {
    u"     File.Delete: ",
    u"     File.Create: ",
    u"     File.Created: ",
    u"     File.Modified: ",
    u"     other = File",
    u"    other == File ",
    u"     other.Rename( 'house' ) ",
    u"     other == File ",
    u"     other.Rename( File.GetName() ) ",
};

constexpr ExerciseLabels kDirLabels = {
    u"     Dir.Delete: ",
    u"     Dir.Create: ",
    u"     Dir.Created: ",
    u"     Dir.Modified: ",
    u"     otherDir = Dir",
    u"    otherDir == Dir ",
    u"     otherDir.Rename( 'house' ) ",
    u"     otherDir == Dir ",
    u"     otherDir.Rename( Dir.GetName() ) ",
};

/// Creates, renames and deletes a file or directory that does not exist.
template <typename Entry>
void Exercise(Entry const& inEntry, ExerciseLabels const& inLabels, Steps& ioSteps) {
    ioSteps.Try(inLabels.remove, [&] { inEntry.Delete(); });
    ioSteps.Try(inLabels.create, [&] { inEntry.Create(); });
    ioSteps.PrintTime(inLabels.created, [&] { return inEntry.Created(); });
    ioSteps.PrintTime(inLabels.modified, [&] { return inEntry.Modified(); });
    ioSteps.Line(inLabels.copy);
    Entry other(inEntry);
    auto const isEqual = [&] { return other == inEntry ? u"true"_utf16 : u"false"_utf16; };
    ioSteps.Print(inLabels.isEqualAtFirst, isEqual);
    ioSteps.Try(inLabels.rename, [&] { other.Rename(u"house"_utf16); });
    ioSteps.Print(inLabels.isEqual, isEqual);
    ioSteps.Try(inLabels.renameBack, [&] { other.Rename(inEntry.GetName()); });
    ioSteps.Print(inLabels.isEqual, isEqual);
    if (inEntry.Exists()) {
        ioSteps.Try(inLabels.remove, [&] { inEntry.Delete(); });
    }
}

} // namespace

void ListDirs::Execute(UTF16String const&, UTF16OutputStream& ioOut) {
    struct Line {
        char16_t const* label;
        Dir (*directory)();
    };
    static constexpr Line kLines[] = {
        {u"App Dir = \t\t", Dir::AppDir},
        {u"Executable Dir = \t\t", commondirs::ExecutableDir},
        {u"Resources Dir = \t\t", commondirs::ResourcesDir},
        {u"Package Dir = \t\t", Dir::PackageDir},
        {u"Common Files Dir = \t\t", Dir::CommonFilesDir},
        {u"Plugins Dir = \t\t", commondirs::PluginsDir},
        {u"Required Plugins Dir = \t\t", commondirs::RequiredPluginsDir},
        {u"User Docs Dir = \t\t", Dir::UserDocsDir},
        {u"Temp Dir = \t\t", Dir::TempDir},
        {u"Pref Dir = \t\t", Dir::PrefDir},
        {u"Global Pref Dir = \t\t", Dir::GlobalPrefDir},
    };
    for (auto const& line : kLines) {
        ioOut << line.label << line.directory().FullPath() << EndLine;
    }
}

void ListVols::Execute(UTF16String const&, UTF16OutputStream& ioOut) {
    ioOut << u"List Volumes: " << EndLine;
    auto const end = Dir::EndVolumes();
    for (auto volume = Dir::BeginVolumes(); volume != end; ++volume) {
        ioOut << u"  " << (*volume).FullPath() << EndLine;
    }
}

void FileExists::Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) {
    Steps steps(ioOut);
    File const file(inArguments);
    steps.Print(u"File.FullPath: ", [&] { return file.FullPath(); });
    bool const isFound = file.Exists();
    steps.Line(isFound ? u"    found." : u"    not found.");
    steps.PrintTime(u"   File.Created: ", [&] { return file.Created(); });
    steps.PrintTime(u"   File.Modified: ", [&] { return file.Modified(); });
    steps.Print(u" File.GetName: ", [&] { return file.GetName(); });
    steps.Print(u" File.GetTitle: ", [&] { return file.GetTitle(); });
    steps.Print(u" File.GetExtension: ", [&] { return file.GetExtension(false); });
    steps.Print(u" File.GetExtension toLower: ", [&] { return file.GetExtension(true); });
    if (!isFound) {
        Exercise(file, kFileLabels, steps);
    }

    Dir const parent = file.Parent();
    steps.Print(u" Parent.FullPath: ", [&] { return parent.FullPath(); });
    bool const isParentFound = parent.Exists();
    steps.Line(isParentFound ? u"    found" : u"    not found");
    steps.PrintTime(u"   Dir.Created: ", [&] { return parent.Created(); });
    steps.PrintTime(u"   Dir.Modified: ", [&] { return parent.Modified(); });
    steps.Print(u" Dir.GetName: ", [&] { return parent.GetName(); });
    if (!isParentFound) {
        Exercise(parent, kDirLabels, steps);
    }
    steps.Line(u"");
}

void DirExists::Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) {
    Dir const dir(inArguments);
    ioOut << u"Directory Path: " << dir.FullPath() << EndLine;
    ioOut << (dir.Exists() ? u"    found." : u"    not found.") << EndLine;
    ioOut << u" Dir Name: " << dir.GetName() << EndLine;
    Dir const parent = dir.Parent();
    ioOut << u" Parent Path: " << parent.FullPath() << EndLine;
    ioOut << (parent.Exists() ? u"    found" : u"    not found") << EndLine;
    ioOut << u" Dir name: " << parent.GetName() << EndLine;
    ioOut << EndLine;
}

} // namespace brindle::console::commands::filesupport
