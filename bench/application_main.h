#pragma once

#include <QApplication>
#include <benchmark/benchmark.h>

// Sources are widgets, so benchmarks that build them need an application object; the run
// chooses the offscreen platform unless one is set.
inline int RunBenchmarksInApplication(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
