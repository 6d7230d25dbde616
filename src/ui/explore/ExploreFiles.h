// ExploreFiles.h - what goes out of Explore as files: profiles for other tools, and pictures.
#pragma once

#include "ui/kit/BackgroundWork.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace carvelot {

class CExploration;
class IPicture;

// "Export Profile...": asks for a file and writes the profile of scope and range beside the windows. One at a
// time; a session that goes, or Esc, ends it without a file.
class CProfileExport : public QObject {
    Q_OBJECT

public:
    explicit CProfileExport(CExploration& exploration);
    ~CProfileExport() override;

    void Ask();
    bool IsRunning() const { return m_pWork != nullptr; }
    // Ends it; the file that was there stays.
    void Stop();

signals:
    // It was written, was ended or failed; the user has been told of a failure.
    void Ended();

private:
    struct CRun;
    void Start(const QString& path);
    void OnDone(const CRun& run);

    CExploration& m_exploration;
    std::unique_ptr<CBackgroundWork> m_pWork;
};

// "Save Picture...": asks for a file and draws the picture into it, as PNG or as SVG by the file's ending.
// `picture` gives it, or null, when the file is known: while the user is asked another one may take its
// place. `name`: without an ending.
void SavePicture(const std::function<const IPicture*()>& picture, const QString& name, const QFont& font);

} // namespace carvelot
