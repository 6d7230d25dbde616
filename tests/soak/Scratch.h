// Scratch.h - the logs of a soak, all below one folder: some to open, and one that somebody writes all the
// while.
#pragma once

#include <QString>
#include <QStringList>

#include <atomic>
#include <cstdint>
#include <random>
#include <thread>

namespace carvelot::soak {

class CScratch {
public:
    // Fills the folder with what the samples' folder holds, packed too, and with what is no log at all.
    CScratch(const QString& folder, const QString& samples);
    ~CScratch();

    const QString& Folder() const { return m_strFolder; }
    QString Path(const char* name) const { return m_strFolder + u'/' + QLatin1String(name); }
    // Some of them are emptied, removed or written over on the way: what is opened next is whole again.
    const QStringList& Logs() const { return m_listLogs; }
    const QStringList& Pieces() const { return m_listPieces; }
    void Mend(const QString& log) const;
    QString GrowingLog() const { return Path("logs/growing.log"); }

private:
    QByteArray Sample(const QString& name) const;
    void Add(const QString& name, const QByteArray& bytes);
    void WriteOn();

    QString m_strFolder;
    QString m_strSamples;
    QStringList m_listLogs;
    QStringList m_listPieces;
    std::atomic<bool> m_bEnd = false;
    std::thread m_writer;
};

} // namespace carvelot::soak
