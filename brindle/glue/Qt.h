#pragma once

#include <brindle/threads/EventLoop.h>

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>

#include <exception>

/// For programs whose loop is Qt's, version 5 or 6. The library itself does not use Qt.
namespace brindle::glue {

/// Serves the calling thread's executors from its Qt event loop, as long as it exists.
///
///     QApplication application(argc, argv);
///     glue::QtLoop const attached; // on the thread that runs the event loop
///     auto const loop = threads::AdaptCurrentEventLoopAsExecutor();
///
/// A loop that a function runs, for a modal dialog, serves them too. Make one for a thread, after
/// the application object, and destroy it on that thread.
class QtLoop {
public:
    /// With a priority other than the normal one, functions run as an event of that priority would
    /// among those that are posted. Throws as `threads::EventLoopDescriptor`.
    explicit QtLoop(int inPriority = Qt::NormalEventPriority) : mNotifier(inPriority) {}

private:
    class Notifier : public QSocketNotifier {
    public:
        explicit Notifier(int inPriority)
            : QSocketNotifier(threads::EventLoopDescriptor(), QSocketNotifier::Read),
              mPriority(inPriority) {}

    protected:
        // Not by the signal, which differs from version to version and would need no less code.
        bool event(QEvent* inEvent) override {
            if (inEvent->type() == QEvent::SockAct && mPriority != Qt::NormalEventPriority) {
                setEnabled(false); // until the functions have had their turn
                QCoreApplication::postEvent(this, new QEvent(QEvent::User), mPriority);
                return true;
            }
            if (inEvent->type() == QEvent::SockAct || inEvent->type() == QEvent::User) {
                setEnabled(true);
                Dispatch();
                return true;
            }
            return QSocketNotifier::event(inEvent);
        }

    private:
        static void Dispatch() noexcept {
            try {
                threads::DispatchMessages();
            } catch (std::exception const& error) { // it must not leave through Qt
                qWarning("%s", error.what());
            } catch (...) {
                qWarning("a function threw what is no std::exception");
            }
        }

        int const mPriority;
    };

    Notifier mNotifier;
};

} // namespace brindle::glue
