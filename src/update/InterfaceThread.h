#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>

#include <type_traits>

// Runs a function on the interface thread and answers its result. Windows, message boxes and
// their answers belong to that thread; the update worker asks it and waits, while the interface
// thread goes on serving the user. Called on the interface thread itself it simply runs.
// The function must not wait for the calling worker, or both would wait for each other.
template <typename Function>
auto OnInterfaceThread(Function function) -> std::invoke_result_t<Function>
{
    using Result = std::invoke_result_t<Function>;
    QCoreApplication* application = QCoreApplication::instance();
    if (QThread::currentThread() == application->thread())
        return function();
    if constexpr (std::is_void_v<Result>) {
        QMetaObject::invokeMethod(application, std::move(function), Qt::BlockingQueuedConnection);
    } else {
        // A call the interface thread drops unrun (the application going away) answers the
        // default, as a message box nobody could answer does.
        Result result{};
        QMetaObject::invokeMethod(application, std::move(function), Qt::BlockingQueuedConnection, &result);
        return result;
    }
}
