#pragma once

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdlib>
#include <functional>

// The folder a benchmark program writes its files in; its profile and data homes live there
// too, so that no run touches the user's own.
inline QTemporaryDir& scratch()
{
    static QTemporaryDir dir;
    return dir;
}

// Runs the registered benchmarks headless, after the program's own set-up; benchmarks of widgets
// name QApplication.
template <typename Application = QGuiApplication>
int RunBenchmarks(int argc, char** argv, const std::function<void()>& setUp = {},
                  const std::function<void()>& tearDown = {})
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    const QByteArray home = scratch().path().toLocal8Bit();
    setenv("XDG_CONFIG_HOME", home.constData(), 1);
    setenv("XDG_DATA_HOME", home.constData(), 1);
    Application app(argc, argv);
    if (setUp)
        setUp();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    // Windows go before the application does.
    if (tearDown)
        tearDown();
    return 0;
}
