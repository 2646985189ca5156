#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace brindle::filesupport {

/// What `IDequeByteStream` and `IStringByteStream` are: a stream that reads a container of bytes
/// which the caller keeps alive. If the container changes meanwhile, reading goes on at the same
/// position in its new content. A position past the present end is refused with `eof_error`.
template <typename Container>
class BRN_API IContainerByteStream : public IByteStream {
public:
    ~IContainerByteStream() override;

    /// Throws `eof_error` at the end of the container.
    std::uint8_t Get() override {
        if (mPosition >= mContainer.size()) {
            throw eof_error();
        }
        return static_cast<std::uint8_t>(mContainer[mPosition++]);
    }

    /// Reads what there is, and then throws `eof_error` if that is less.
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override {
        // The size is looked at afresh, because the owner may have shortened the container.
        auto const start = std::min(mPosition, mContainer.size());
        auto const available = std::min<std::size_t>(inCount, mContainer.size() - start);
        std::copy_n(mContainer.begin() + static_cast<std::ptrdiff_t>(start), available,
                    outDestination);
        mPosition += available;
        if (available < inCount) {
            throw eof_error();
        }
    }

    ///@{
    /// A position behind the end is refused with `eof_error`.
    void CurPos(std::uint64_t inPosition) override {
        if (inPosition > mContainer.size()) {
            throw eof_error();
        }
        mPosition = static_cast<std::size_t>(inPosition);
    }
    std::uint64_t CurPos() const override { return mPosition; }
    ///@}

    /// The present size of the container.
    std::uint64_t Length() const override { return mContainer.size(); }

protected:
    /// Reads from the container, which must outlive the stream.
    explicit IContainerByteStream(Container const& inContainer) noexcept
        : mContainer(inContainer) {}

private:
    Container const& mContainer;
    std::size_t mPosition = 0;
};

template <typename Container>
IContainerByteStream<Container>::~IContainerByteStream() = default;

/// What `ODequeByteStream` and `OStringByteStream` are: a stream that appends to a container of
/// bytes which the caller keeps alive. The position is always the container's size, and setting it
/// does nothing.
template <typename Container>
class BRN_API OContainerByteStream : public OByteStream {
public:
    ~OContainerByteStream() override;

    ///@{
    /// Appends, whatever position was set.
    void Put(std::uint8_t inValue) override {
        mContainer.push_back(static_cast<typename Container::value_type>(inValue));
    }
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override {
        auto const source = reinterpret_cast<typename Container::value_type const*>(inSource);
        mContainer.insert(mContainer.end(), source, source + inCount);
    }
    ///@}
    ///@{
    /// The size of the container; setting it has no effect.
    void CurPos(std::uint64_t) override {}
    std::uint64_t CurPos() const override { return mContainer.size(); }
    ///@}

protected:
    /// Appends to the container, which must outlive the stream.
    explicit OContainerByteStream(Container& outContainer) noexcept : mContainer(outContainer) {}

private:
    Container& mContainer;
};

template <typename Container>
OContainerByteStream<Container>::~OContainerByteStream() = default;

} // namespace brindle::filesupport
