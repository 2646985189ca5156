#include <brindle/glue/Qt.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <memory>
#include <string>
#include <thread>

namespace brindle::glue {

namespace {

TEST(QtLoop, RunsFunctionsAlsoInNestedLoopsAsLongAsItExists) {
    for (int const priority : {Qt::NormalEventPriority, Qt::LowEventPriority}) {
        SCOPED_TRACE(priority);
        auto attached = std::make_unique<QtLoop>(priority);
        auto const loop = threads::AdaptCurrentEventLoopAsExecutor();
        std::string ran;
        auto const runNestedLoop = [&] {
            ran += '(';
            QEventLoop nested;
            loop->Post([&] { nested.quit(); }, 0);
            nested.exec();
            ran += ')';
        };
        std::thread([&] {
            loop->Post(runNestedLoop, 0);
            loop->Post([&] { ran += '1', throw 1; }, 0);
            loop->Post([&] { ran += '2'; }, 0);
        }).join();
        QEventLoop outer;
        loop->Post([&] { loop->Post([&] { outer.quit(); }, 0); }, 0);
        outer.exec();
        EXPECT_EQ(ran, "(12)");
        attached.reset();
        loop->Post([] { ADD_FAILURE(); }, 0);
        QCoreApplication::processEvents();
    }
}

} // namespace

} // namespace brindle::glue

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication const application(argc, argv);
    return RUN_ALL_TESTS();
}
