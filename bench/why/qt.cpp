#include "Probe.h"

#include <QCollator>
#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringDecoder>
#include <QThreadPool>
#include <QTimeZone>
#include <QTranslator>

namespace {

/// As a compiled catalogue would: English by number.
class Plurals : public QTranslator {
public:
    QString translate(char const*, char const*, char const*, int inCount) const override {
        return inCount == 1 ? "one file" : "%n files";
    }
    bool isEmpty() const override { return false; }
};

} // namespace

bool UseLibrary() {
    std::atomic<bool> ran{false};
    QThreadPool* const pool = QThreadPool::globalInstance();
    if (pool == nullptr) {
        return false;
    }
    pool->start([&] { ran = true; });
    return pool->waitForDone(2000) && ran && QString::fromUtf8("a").toUpper() == "A" &&
           QLocale().toString(1.5).size() == 3 && !QDir::tempPath().isEmpty();
}

bool Save(std::string const& inPath, std::string const& inContent) {
    QSaveFile file(QFile::decodeName(inPath.c_str()));
    return file.open(QIODevice::WriteOnly) &&
           file.write(inContent.data(), static_cast<qint64>(inContent.size())) ==
               static_cast<qint64>(inContent.size()) &&
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
    Row("Malformed UTF-8 becomes UTF-16 with U+FFFD, and is no failure",
        QString(decoder("a\xFFz")) == QStringView(u"a\uFFFDz"));
    Row("Unicode normalisation",
        QString::fromUtf8("u\xCC\x88").normalized(QString::NormalizationForm_C) == QChar(0xFC));
    QCollator collator;
    collator.setNumericMode(true);
    Row("Names sorted by the numbers in them", collator.compare("clip 9", "clip 10") < 0);
    Row("Numbers by the separators of the user's locale",
        QLocale::system().toString(1234.5, 'f', 2) == "1.234,50" &&
            QLocale::system().toDouble("1.234,5") == 1234.5);
    Row("Regular expressions", QRegularExpression("^a+$").match("aaa").hasMatch());
    std::chrono::nanoseconds const second = std::chrono::seconds(1); // the finest unit here
    Row("A duration holds a frame of 30000/1001 exactly",
        1001 * second / 30000 * 30000 == 1001 * second);
    Row("Time zones by name",
        QTimeZone("Europe/Paris").offsetFromUtc(QDateTime::fromSecsSinceEpoch(1593554400)) == 7200);

    QJsonObject inner, outer;
    inner["n"] = qint64(9007199254740993);
    outer["a"] = inner;
    auto const again = QJsonDocument::fromJson(QJsonDocument(outer).toJson());
    bool const isSame = again["a"]["n"].toInteger() == 9007199254740993;
    Row("Nested typed values as a text, 64-bit integers exact", isSame);
    Row("JSON", isSame);
    QHash<QString, int> const hash{{"two", 2}};
    Row("Hash maps of its own", hash["two"] == 2);

    QThreadPool pool;
    pool.setMaxThreadCount(1);
    pool.setExpiryTimeout(-1); // its thread stays
    std::atomic<int> count{0};
    for (int work = 0; work < 100; ++work) {
        pool.start([&] { ++count; });
    }
    Row("A pool of one thread takes many functions", pool.waitForDone(5000) && count == 100);
    for (int work = 0; work < 100; ++work) {
        pool.start([&] { ++count, std::this_thread::sleep_for(std::chrono::milliseconds(50)); });
    }
    pool.clear();
    Row("What a pool has not begun can be cancelled", pool.waitForDone(2000) && count < 200);
    std::atomic<bool> ran{false};
    pool.start([&] {
        ran = true;
    }); // waiting until a pool is done ends its threads, so now it has one again
    Await([&] { return ran.load(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100)); // which is idle
    ForkRow([&](std::atomic<bool>& outRan) { return pool.start([&] { outRan = true; }), true; });

    int argc = 0;
    QCoreApplication app(argc, nullptr);
    Plurals plurals;
    QCoreApplication::installTranslator(&plurals);
    Row("Plurals in translated texts",
        QCoreApplication::translate("", "%n file(s)", nullptr, 2) == "2 files");
}
