#include <brindle/utility/RefCountedObject.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <gtest/gtest.h>

#include <thread>

using namespace brindle::utility;

namespace {

struct Counted : RefCountedObject {
    explicit Counted(int& ioDeaths) : deaths(ioDeaths) {}
    ~Counted() override {
        boost::intrusive_ptr<Counted> const handedOut(this);
        ++deaths;
    }
    using RefCountedObject::KeepWhenUnreferenced;

    int& deaths;
};

} // namespace

TEST(RefCountedObject, IsDeletedOnceByItsLastPointer) {
    int deaths = 0;
    boost::intrusive_ptr<Counted> first(new Counted(deaths));
    boost::intrusive_ptr<Counted>(new Counted(*first)).reset();
    EXPECT_EQ(deaths, 1);

    auto const share = [](boost::intrusive_ptr<Counted> inMine) {
        for (int round = 0; round < 10000; ++round) {
            boost::intrusive_ptr<Counted> const other = inMine;
        }
    };
    std::thread one(share, first), two(share, std::move(first));
    one.join();
    two.join();
    EXPECT_EQ(deaths, 2);

    Counted kept(deaths);
    kept.KeepWhenUnreferenced();
    boost::intrusive_ptr<Counted>(&kept).reset();
    EXPECT_EQ(deaths, 2);
}
