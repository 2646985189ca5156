#include "Probe.h"

#include <QDir>
#include <QLocale>
#include <QSaveFile>
#include <QStringDecoder>
#include <QThreadPool>

bool UseLibrary() {
    std::atomic<bool> ran{false};
    QThreadPool pool;
    pool.start([&] { ran = true; });
    pool.waitForDone();
    return ran && QString::fromUtf8("a").toUpper() == "A" && QLocale().toString(1.5).size() == 3 &&
           !QDir::tempPath().isEmpty();
}

bool Save(std::string const& inPath, std::string const& inContent) {
    auto const size = static_cast<qint64>(inContent.size());
    QSaveFile file(QFile::decodeName(inPath.c_str()));
    return file.open(QIODevice::WriteOnly) && file.write(inContent.data(), size) == size &&
           file.commit();
}

bool OpensWhatItLists(std::string const& inDirectory) {
    QDir const dir(QFile::decodeName(inDirectory.c_str()));
    QStringList const names = dir.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    return names.size() == 1 && QFile(dir.filePath(names[0])).open(QIODevice::ReadOnly);
}

void Rows() {
    FileRows();
    QStringDecoder decoder(QStringDecoder::Utf8);
    Row("Malformed UTF-8 converts to UTF-16, with U+FFFD in its place",
        QString(decoder("a\xFFz")) == QStringView(u"a\uFFFDz"));
    QLocale const user = QLocale::system();
    Row("Numbers with the separators of the user's locale",
        user.toString(1234.5, 'f', 2) == "1.234,50" && user.toDouble("1.234,5") == 1234.5);
    std::chrono::nanoseconds const seconds = std::chrono::seconds(1001); // its finest unit
    Row("A duration holds a frame of 30000/1001 exactly", seconds / 30000 * 30000 == seconds);

    QThreadPool pool;
    pool.setMaxThreadCount(1);
    pool.setExpiryTimeout(-1); // the thread stays
    PoolRows([&](std::atomic<int>& outCalls) {
        pool.start([&] { ++outCalls; });
        return true; // it cannot refuse
    });
}
