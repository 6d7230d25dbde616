#include "soak/Gauge.h"

#include <QApplication>
#include <QFile>
#include <QSet>
#include <QWidget>

#include <map>

#include <dirent.h>
#include <malloc.h>
#include <unistd.h>

namespace carvelot::soak {

namespace {

constexpr double kMegabyte = 1024.0 * 1024.0;

int Entries(const char* folder) {
    int count = 0;
    DIR* const directory = opendir(folder);
    if (directory == nullptr) {
        return -1;
    }
    while (const dirent* const entry = readdir(directory)) {
        count += entry->d_name[0] != '.' ? 1 : 0;
    }
    closedir(directory);
    return count;
}

double Resident() {
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QList<QByteArray> numbers = file.readAll().split(' ');
    return numbers.value(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) / kMegabyte;
}

} // namespace

CSample TakeSample() {
    malloc_trim(0);
    CSample sample;
    sample.m_fResident = Resident();
    const struct mallinfo2 heap = mallinfo2();
    sample.m_fHeap = static_cast<double>(heap.uordblks + heap.hblkhd) / kMegabyte;
    sample.m_nFiles = Entries("/proc/self/fd");
    sample.m_nThreads = Entries("/proc/self/task");
    const QWidgetList widgets = QApplication::allWidgets();
    sample.m_nWidgets = static_cast<int>(widgets.size());
    sample.m_nObjects = static_cast<int>(qApp->findChildren<QObject*>().size());
    for (const QWidget* widget : widgets) {
        if (widget->parent() == nullptr) {
            sample.m_nObjects += 1 + static_cast<int>(widget->findChildren<QObject*>().size());
        }
    }
    return sample;
}

QString CountedClasses() {
    std::map<QString, int> counts;
    for (const QWidget* widget : QApplication::allWidgets()) {
        ++counts[QLatin1String(widget->metaObject()->className())];
        for (const QObject* child : widget->children()) {
            counts[QLatin1String(child->metaObject()->className())] += child->isWidgetType() ? 0 : 1;
        }
    }
    QStringList lines;
    for (const auto& [name, count] : counts) {
        lines << QStringLiteral("%1 %2").arg(name).arg(count);
    }
    return lines.join(QStringLiteral(", "));
}

double Rise(const std::vector<CSample>& samples, double (*number)(const CSample&)) {
    const std::size_t first = samples.size() / 4;
    const std::size_t count = samples.size() - first;
    if (count < 2) {
        return 0;
    }
    double seconds = 0;
    double numbers = 0;
    for (std::size_t n = first; n < samples.size(); ++n) {
        seconds += samples[n].m_fSeconds / static_cast<double>(count);
        numbers += number(samples[n]) / static_cast<double>(count);
    }
    double together = 0;
    double alone = 0;
    for (std::size_t n = first; n < samples.size(); ++n) {
        const double away = samples[n].m_fSeconds - seconds;
        together += away * (number(samples[n]) - numbers);
        alone += away * away;
    }
    const double length = samples.back().m_fSeconds - samples[first].m_fSeconds;
    return alone > 0 ? together / alone * length : 0;
}

} // namespace carvelot::soak
