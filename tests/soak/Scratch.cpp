#include "soak/Scratch.h"

#include "support/Archives.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <cstdio>
#include <utility>

namespace carvelot::soak {

namespace {

// What the log that grows may have before its writer begins a new one.
constexpr qint64 kMostGrowth = 1'000'000;

QByteArray ReadAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool WriteAll(const QString& path, const QByteArray& bytes,
              QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Truncate) {
    QFile file(path);
    return file.open(mode) && file.write(bytes) == bytes.size();
}

QByteArray Bytes(const std::string& text) { return QByteArray::fromStdString(text); }

} // namespace

CScratch::CScratch(const QString& folder, const QString& samples)
    : m_strFolder(QDir(folder).absolutePath()), m_strSamples(samples) {
    for (const char* name : {"logs", "whole", "exports"}) {
        QDir(m_strFolder).mkpath(QLatin1String(name));
    }
    for (const QString& name : QDir(samples).entryList({QStringLiteral("*.log")}, QDir::Files)) {
        Add(name, Sample(name));
    }
    const std::string order = Sample(QStringLiteral("order-entry.log")).toStdString();
    const std::string web = Sample(QStringLiteral("jas-web.log")).toStdString();
    Add(QStringLiteral("order.log.gz"), Bytes(test::Gzip(order)));
    Add(QStringLiteral("web.log.zst"), Bytes(test::Zstd(web)));
    Add(QStringLiteral("one.zip"), Bytes(test::Zip({{"logs/order.log", order}})));
    Add(QStringLiteral("several.zip"),
        Bytes(test::Zip({{"a.log", order}, {"logs/b.log", web}, {"<b>c</b>.log", order}})));
    Add(QStringLiteral("cut.gz"), Bytes(test::Gzip(order).substr(0, 4000)));
    Add(QStringLiteral("many-lines.log"), Bytes(test::LogOfLines(60'000)));
    Add(QStringLiteral("many-lines.log.gz"), Bytes(test::Gzip(test::LogOfLines(60'000))));
    // A log in pieces, of whole lines.
    const std::size_t first = order.find('\n', order.size() / 3) + 1;
    const std::size_t second = order.find('\n', 2 * order.size() / 3) + 1;
    Add(QStringLiteral("piece.log.2"), Bytes(order.substr(0, first)));
    Add(QStringLiteral("piece.log.1"), Bytes(order.substr(first, second - first)));
    Add(QStringLiteral("piece.log"), Bytes(order.substr(second)));
    m_listPieces = m_listLogs.mid(m_listLogs.size() - 3);
    // No logs.
    Add(QStringLiteral("empty.log"), {});
    Add(QStringLiteral("letter.txt"), "Dear all,\nthis is not a log.\n");
    QByteArray noise;
    std::minstd_rand random(1);
    while (noise.size() < 100'000) {
        noise.append(static_cast<char>(random() >> 8));
    }
    Add(QStringLiteral("noise.bin"), noise);
    m_listLogs << Path("logs/missing.log") << Path("exports");

    WriteAll(GrowingLog(), {});
    m_writer = std::thread([this] { WriteOn(); });
}

CScratch::~CScratch() {
    m_bEnd = true;
    m_writer.join();
}

QByteArray CScratch::Sample(const QString& name) const { return ReadAll(m_strSamples + u'/' + name); }

void CScratch::Add(const QString& name, const QByteArray& bytes) {
    WriteAll(m_strFolder + QStringLiteral("/whole/") + name, bytes);
    const QString log = m_strFolder + QStringLiteral("/logs/") + name;
    WriteAll(log, bytes);
    m_listLogs << log;
}

void CScratch::Mend(const QString& log) const {
    const QFileInfo whole(m_strFolder + QStringLiteral("/whole/") + QFileInfo(log).fileName());
    if (whole.exists() && QFileInfo(log).size() != whole.size()) {
        WriteAll(log, ReadAll(whole.filePath()));
    }
}

// Some lines a moment. Now and then the log is emptied, or rotated as servers do: the old one takes another
// name, and a new one begins.
void CScratch::WriteOn() {
    std::minstd_rand random(2);
    const QList<QByteArray> lines = Sample(QStringLiteral("order-entry.log")).split('\n');
    qsizetype next = 0;
    QByteArray rest; // of a line that is written in two goes
    while (!m_bEnd) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        const bool large = QFileInfo(GrowingLog()).size() > kMostGrowth;
        switch (large ? random() % 2 : random() % 400) {
        case 0:
            WriteAll(GrowingLog(), {});
            next = 0;
            rest.clear();
            break;
        case 1:
            std::rename(GrowingLog().toUtf8().constData(),
                        (GrowingLog() + QStringLiteral(".1")).toUtf8().constData());
            next = 0;
            rest.clear();
            break;
        default:
            break;
        }
        QByteArray more = std::exchange(rest, {});
        for (auto count = random() % 20; count > 0; --count) {
            more += lines[next] + '\n';
            next = (next + 1) % lines.size();
        }
        // A writer is often in the midst of a line.
        if (random() % 3 == 0) {
            const QByteArray line = lines[next] + '\n';
            next = (next + 1) % lines.size();
            more += line.left(line.size() / 2);
            rest = line.mid(line.size() / 2);
        }
        WriteAll(GrowingLog(), more, QIODevice::WriteOnly | QIODevice::Append);
    }
}

} // namespace carvelot::soak
