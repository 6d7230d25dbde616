#include "bench/window/TimelineBench.h"

#include "explore/pictures/Timeline.h"
#include "support/TestLog.h"
#include "ui/explore/TimelineWidget.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>

using namespace carvelot::test;

namespace carvelot::bench {

namespace {

constexpr int kFrames = 1'000'000;
constexpr int kThreads = 8;
constexpr int kZooms = 12;
constexpr double kFrameTime = 0.016; // seconds between two pictures of a screen

template <class Work> double Seconds(const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Threads in turn: six calls in each other and four statements in the innermost one, a hundred microseconds a
// line, with an hour's rest in the middle.
void WriteFrames(const std::string& path) {
    std::ofstream out(path, std::ios::binary);
    out << TestSession::Joined(DebugLog({}));
    std::uint64_t time = 0;
    const auto line = [&](int thread, const std::string& text) {
        char buffer[48];
        const std::uint64_t seconds = time / 1'000'000;
        std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d.%06d", static_cast<int>(8 + seconds / 3600),
                      static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60),
                      static_cast<int>(time % 1'000'000));
        out << DebugLine(buffer, text, "5712/" + std::to_string(100 + thread)) << '\n';
        time += 100;
    };
    for (int n = 0; n < kFrames / 10; ++n) {
        const int thread = n / 7 % kThreads;
        const auto name = [n](int level) { return "F4211Function" + std::to_string((n * 7 + level) % 300); };
        for (int level = 1; level <= 6; ++level) {
            line(thread, "Calling Business function " + name(level) +
                             " from (BSFNLevel = " + std::to_string(level) + ")");
        }
        for (int statement = 0; statement < 4; ++statement) {
            line(thread, "SELECT * FROM PRODDTA.F42" + std::to_string(10 + (n + statement) % 80));
            line(thread, "Exiting DBPerformRequest");
        }
        for (int level = 6; level >= 1; --level) {
            line(thread, "Return value is " + std::to_string(n % 500 == 0 ? 2 : 0) + " for " + name(level) +
                             ". (BSFNLevel = " + std::to_string(level) + ")");
        }
        time += n == kFrames / 20 ? 3'600'000'000 : 0;
    }
}

struct Painted {
    double longest = 0;
    double zoom = 0; // microseconds a pixel of that one
    double sum = 0;
    int count = 0;
};

// At several places of each zoom, from the whole log to a microsecond a pixel.
Painted PaintAll(CTimelineWidget& widget) {
    Painted painted;
    const double whole = widget.View()->PerPixel();
    for (int zoom = 0; zoom < kZooms; ++zoom) {
        const double perPixel = std::pow(whole, 1.0 - static_cast<double>(zoom) / (kZooms - 1));
        const double span = perPixel * widget.View()->Plot().width;
        const CTimeline& timeline = widget.View()->Timeline();
        for (const double place : {0.05, 0.3, 0.31, 0.7, 0.95}) {
            const double middle = static_cast<double>(timeline.To()) * place;
            double least = 1e9;
            for (int n = 0; n < 3; ++n) { // noise only ever adds
                widget.Change([&](CTimelineView& view) {
                    view.ShowSpan(static_cast<std::int64_t>(middle - span / 2),
                                  static_cast<std::int64_t>(middle + span / 2));
                });
                least = std::min(least, Seconds([&] { widget.repaint(); }));
            }
            painted.sum += least;
            ++painted.count;
            if (least > painted.longest) {
                painted.longest = least;
                painted.zoom = perPixel;
            }
        }
    }
    return painted;
}

} // namespace

void MeasureTimeline(const std::string& folder) {
    const std::string path = folder + "/frames.log";
    WriteFrames(path);
    AnalysisSettings settings;
    PendingStatement pending;
    RecordingHost host;
    CCarvelotDoc session(settings, pending, host);
    session.m_strLogPath = path;
    const double load = Seconds([&] { session.LoadLog(); });
    const ExploredSession explored(session, settings);
    const std::vector<Finding> findings = FindAll(explored);
    std::unique_ptr<CTimeline> timeline;
    double build = 1e9;
    for (int n = 0; n < 3; ++n) {
        build = std::min(build, Seconds([&] { timeline = std::make_unique<CTimeline>(explored, findings); }));
    }
    std::printf("| %-58s | %9.1f ms | %8.3f | %6.2f |\n",
                "a timeline's levels built, over the load of its log", build * 1000, build / load, 0.2);
    const double frames = explored.frames.Count();
    const double bytes = static_cast<double>(timeline->Levels().Bytes() + timeline->Rows().Bytes()) / frames;
    std::printf("(%.0f frames; levels and rows take %.1f bytes a frame, whose own 40 bytes are the target)\n",
                frames, bytes);

    CTimelineWidget widget(nullptr);
    widget.resize(1920, 1080);
    widget.show();
    QCoreApplication::processEvents();
    widget.Show(timeline.get());
    const auto print = [](const char* what, const Painted& painted) {
        std::printf("| %-58s | %9.1f ms | %8.3f | %6.2f |\n", what, painted.longest * 1000,
                    painted.longest / kFrameTime, 1.0);
        std::printf("(at %.0f microseconds a pixel; %.1f ms in the mean)\n", painted.zoom,
                    painted.sum / painted.count * 1000);
    };
    print("the longest paint of a timeline at 12 zooms, over 16 ms", PaintAll(widget));
    const double search =
        Seconds([&] { widget.Change([](CTimelineView& view) { view.Search("function1"); }); });
    print("the same while a search fades the rest, over 16 ms", PaintAll(widget));
    std::printf("(the search takes %.1f ms)\n", search * 1000);
}

} // namespace carvelot::bench
