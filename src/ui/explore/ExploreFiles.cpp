#include "ui/explore/ExploreFiles.h"

#include "explore/ProfileExport.h"
#include "explore/pictures/SvgCanvas.h"
#include "platform/AtomicFile.h"
#include "ui/explore/Exploration.h"
#include "ui/explore/PainterCanvas.h"
#include "ui/kit/PathText.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/kit/WaitCursor.h"

#include <QBuffer>
#include <QFontInfo>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <new>

namespace carvelot {

namespace {

// A load that says nothing, and ends with the work that it is part of.
class CSilentHost final : public ISessionHost {
public:
    explicit CSilentHost(CExploreProgress& progress) : m_progress(progress) {}

    void ShowMessage(std::string_view) override {}
    void PrintOutput(std::string_view) override {}
    void LoadProgress(std::uint64_t, std::uint64_t) override { m_progress.Check(); }

private:
    CExploreProgress& m_progress;
};

void TellOfFailure(const QString& path, int error) {
    UserInterface().ShowMessage(
        CProfileExport::tr("Failed to write %1. Error: %2").arg(path, QString::number(error)));
}

} // namespace

// --- Export Profile

struct CProfileExport::CRun {
    QString path;
    ProfileFormat format = ProfileFormat::Folded;
    std::shared_ptr<const ExploredScope> scope;
    CExploreProgress progress;
    bool written = false;
    bool ended = false;
    bool noMemory = false;
    int error = 0;

    void Write(const ExploredSession& explored) {
        try {
            WriteNumbered(explored);
        } catch (const ExploringEnded&) {
            ended = true;
        } catch (const std::bad_alloc&) {
            noMemory = true;
        }
    }

private:
    // The trace tells the line of each record. A session of the window has not counted its lines: the log is
    // read a second time, which gives the same records as long as the file has only grown since.
    void WriteNumbered(const ExploredSession& explored) {
        ExportedProfile profile{explored.session, explored.streams, scope->cut};
        CSilentHost host(progress);
        PendingStatement pending;
        std::unique_ptr<CCarvelotDoc> numbered;
        if (format == ProfileFormat::Trace) {
            numbered = std::make_unique<CCarvelotDoc>(explored.settings, pending, host);
            numbered->m_strLogPath = explored.session.m_strLogPath;
            numbered->m_listMembers = explored.session.m_listMembers;
            numbered->m_nProcessFilter = explored.session.m_nProcessFilter;
            numbered->m_dialects = explored.session.m_dialects;
            numbered->m_bNumberLines = true;
            numbered->LoadLog();
            if (numbered->m_listDetails.Size() >= explored.session.m_listDetails.Size()) {
                profile.lineNumbers = &numbered->m_listLineNumbers;
            }
        }
        written = WriteProfileExport(PathOf(path), format, profile, error, &progress);
    }
};

CProfileExport::CProfileExport(CExploration& exploration)
    : QObject(&exploration), m_exploration(exploration) {
    connect(&exploration, &CExploration::ResultsGo, this, &CProfileExport::Stop);
}

CProfileExport::~CProfileExport() = default;

void CProfileExport::Ask() {
    if (IsRunning()) {
        return;
    }
    const QString name = m_exploration.LogName();
    const auto path = UserInterface().AskSaveFile(
        {EFiles::Exports, tr("Export Profile"), QStringLiteral("speedscope.json"), name,
         QStringLiteral("Speedscope (*.speedscope.json)|*.speedscope.json|"
                        "Trace Events (*.trace.json)|*.trace.json|"
                        "Callgrind Profile (*.callgrind)|*.callgrind|"
                        "Folded Stacks (*.folded)|*.folded||")});
    if (!path) {
        return;
    }
    if (!ProfileFormatOf(PathOf(*path))) {
        UserInterface().ShowMessage(tr("The name of a profile's file ends with .folded, .speedscope.json, "
                                       ".trace.json or .callgrind"));
        return;
    }
    if (m_exploration.GetState() == CExploration::State::Done && m_exploration.Scope() != nullptr) {
        Start(*path);
        return;
    }
    // What is to be written is made first.
    auto* const waiting = new QObject(this);
    const auto go = [this, waiting, path = *path] {
        const CExploration::State state = m_exploration.GetState();
        if (state == CExploration::State::Running ||
            (state == CExploration::State::Done && m_exploration.Scope() == nullptr)) {
            return;
        }
        waiting->deleteLater();
        disconnect(&m_exploration, nullptr, waiting, nullptr);
        if (state == CExploration::State::Done) {
            Start(path);
        }
    };
    connect(&m_exploration, &CExploration::StateChanged, waiting, go);
    connect(&m_exploration, &CExploration::ScopeChanged, waiting, go);
    m_exploration.Start();
}

void CProfileExport::Start(const QString& path) {
    if (IsRunning()) {
        return;
    }
    auto run = std::make_shared<CRun>();
    run->path = path;
    run->format = *ProfileFormatOf(PathOf(path));
    run->scope = m_exploration.SharedScope();
    m_pWork = std::make_unique<CBackgroundWork>(
        [run, &explored = m_exploration.Explored()] { run->Write(explored); }, [run] { run->progress.End(); },
        [this, run] {
            m_pWork.release()->deleteLater();
            OnDone(*run);
        });
}

void CProfileExport::Stop() {
    if (m_pWork != nullptr) {
        m_pWork.reset();
        emit Ended();
    }
}

void CProfileExport::OnDone(const CRun& run) {
    if (run.noMemory) {
        UserInterface().ShowMessage(tr("There is not enough memory to export the profile."));
    } else if (!run.written && !run.ended) {
        TellOfFailure(run.path, run.error);
    }
    emit Ended();
}

// --- Save Picture

namespace {

constexpr double kScale = 2;        // pixels of a PNG to one of the picture
constexpr double kMostSide = 16384; // pixels

QByteArray AsPng(const IPicture& picture, CTextLayouts& layouts) {
    const PictureSize size = picture.Size();
    const double scale = std::min({kScale, kMostSide / size.width, kMostSide / size.height});
    QImage image(static_cast<int>(std::ceil(size.width * scale)),
                 static_cast<int>(std::ceil(size.height * scale)), QImage::Format_RGB32);
    if (image.isNull()) {
        throw std::bad_alloc();
    }
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(scale, scale);
    CPainterCanvas canvas(painter, layouts);
    picture.Draw(canvas);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray AsSvg(const IPicture& picture, CTextLayouts& layouts) {
    QImage small(1, 1, QImage::Format_RGB32);
    QPainter painter(&small);
    CPainterCanvas screen(painter, layouts);
    const QFontInfo font(layouts.Font());
    CSvgCanvas canvas(picture.Size(), screen, ToUtf8(font.family()), font.pixelSize());
    picture.Draw(canvas);
    return QByteArray::fromStdString(canvas.TakeFile());
}

} // namespace

void SavePicture(const std::function<const IPicture*()>& picture, const QString& name, const QFont& font) {
    const auto path = UserInterface().AskSaveFile(
        {EFiles::Exports, CProfileExport::tr("Save Picture"), QStringLiteral("png"), name,
         QStringLiteral("PNG Picture (*.png)|*.png|SVG Picture (*.svg)|*.svg||")});
    if (!path) {
        return;
    }
    const bool isSvg = path->endsWith(QLatin1String(".svg"), Qt::CaseInsensitive);
    if (!isSvg && !path->endsWith(QLatin1String(".png"), Qt::CaseInsensitive)) {
        UserInterface().ShowMessage(
            CProfileExport::tr("The name of a picture's file ends with .png or .svg"));
        return;
    }
    const IPicture* const shown = picture();
    if (shown == nullptr) {
        UserInterface().ShowMessage(CProfileExport::tr("The picture is not there any more."));
        return;
    }
    int error = 0;
    {
        const CWaitCursor wait;
        CTextLayouts layouts(font);
        const QByteArray bytes = isSvg ? AsSvg(*shown, layouts) : AsPng(*shown, layouts);
        platform::AtomicFile file = platform::AtomicFile::Create(PathOf(*path), &error);
        if (file) {
            file.Write({bytes.constData(), static_cast<std::size_t>(bytes.size())});
            if (file.Commit(&error)) {
                return;
            }
        }
    }
    TellOfFailure(*path, error);
}

} // namespace carvelot
