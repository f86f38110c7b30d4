#include "platform/PaintingThread.h"

#include <QSemaphore>
#include <QThread>
#include <QThreadPool>
#include <exception>

void PaintingThread::Run(const std::function<void()>& paint)
{
    QThreadPool* pool = QThreadPool::globalInstance();
    // Already on the pool (or without one, at exit): waiting for a free thread could wait for
    // ourselves.
    if (!pool || pool->contains(QThread::currentThread())) {
        paint();
        return;
    }
    QSemaphore done;
    std::exception_ptr failure;
    pool->start([&] {
        try {
            paint();
        } catch (...) {
            failure = std::current_exception(); // handed back, so that the caller never waits forever
        }
        done.release();
    });
    done.acquire();
    if (failure)
        std::rethrow_exception(failure);
}
