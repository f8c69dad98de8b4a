// SPDX-License-Identifier: MIT
// The connection between a host and a process that reads scenes for it: a socket through which numbers, texts and
// arrays go as they lie in memory, since both ends are of one build.
//
//     WireWriter out(wire);                   WireReader in(wire);
//     out.Text(name);                         in.Text(name);
//     out.Block(vertices);                    in.Block(vertices);
//     wire.Flush();
//
// A function that is a template of its end describes both directions at once, as in scene_wire.h.
//
// Threads: one at a time.

#pragma once

#include <zeltools/foundation/xstring.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

/// Thrown when the other end is gone, or sends what cannot be.
struct WireLost {};

class Wire {
public:
    /// @param descriptor    The socket, which stays the caller's.
    /// @param whileWaiting  Called before each transfer and every 20 milliseconds of waiting; what it throws ends the
    ///                      transfer. Without it the waiting never ends.
    explicit Wire(int descriptor, std::function<void()> whileWaiting = {});

    void Send(void const* data, std::size_t size);
    void Receive(void* data, std::size_t size);
    /// Sends what still waits to be sent.
    void Flush();

private:
    void Wait(short events) const;
    void SendNow(char const* data, std::size_t size);
    std::size_t ReceiveSome(char* data, std::size_t size);

    int socket;
    std::function<void()> poll;
    std::string outgoing;
    std::string incoming;
    std::size_t taken = 0; ///< Of incoming.
};

class WireWriter {
public:
    static constexpr bool Loads = false;

    explicit WireWriter(Wire& connection) : wire(connection) {}

    template <class Value>
    requires std::is_arithmetic_v<Value> || std::is_enum_v<Value>
    void Number(Value const& value) { wire.Send(&value, sizeof value); }
    template <class Value>
    void Optional(std::optional<Value> const& value) {
        Number(static_cast<unsigned char>(value.has_value()));
        if (value) {
            Number(*value);
        }
    }
    void Text(CXTString<char16_t> const& text) {
        std::u16string_view const units(static_cast<char16_t const*>(text));
        Number(units.size());
        wire.Send(units.data(), units.size() * sizeof(char16_t));
    }
    void Text(std::string const& text) {
        Number(text.size());
        wire.Send(text.data(), text.size());
    }
    /// Records without pointers.
    template <class Item>
    void Block(std::vector<Item> const& items) {
        static_assert(std::is_trivially_copyable_v<Item>);
        Number(items.size());
        wire.Send(items.data(), items.size() * sizeof(Item));
    }
    template <class Item, class Transfer>
    void Items(std::vector<Item> const& items, Transfer const& transfer) {
        Number(items.size());
        for (Item const& item : items) {
            transfer(item);
        }
    }

private:
    Wire& wire;
};

/// A count is believed as far as the bytes behind it arrive.
class WireReader {
public:
    static constexpr bool Loads = true;

    explicit WireReader(Wire& connection) : wire(connection) {}

    template <class Value>
    requires std::is_arithmetic_v<Value> || std::is_enum_v<Value>
    void Number(Value& value) { wire.Receive(&value, sizeof value); }
    template <class Value>
    Value Number() {
        Value value{};
        Number(value);
        return value;
    }
    template <class Value>
    void Optional(std::optional<Value>& value) {
        value.reset();
        if (Number<unsigned char>() != 0) {
            value = Number<Value>();
        }
    }
    void Text(CXTString<char16_t>& text) {
        std::u16string units;
        Fill(units);
        text = CXTString<char16_t>(units.data(), static_cast<int>(units.size()));
    }
    void Text(std::string& text) { Fill(text); }
    template <class Item>
    void Block(std::vector<Item>& items) {
        static_assert(std::is_trivially_copyable_v<Item>);
        Fill(items);
    }
    template <class Item, class Transfer>
    void Items(std::vector<Item>& items, Transfer const& transfer) {
        items.clear();
        for (auto count = Number<std::size_t>(); count > 0; --count) {
            transfer(items.emplace_back());
        }
    }

private:
    template <class Array>
    void Fill(Array& items) {
        using Item = typename Array::value_type;
        constexpr std::size_t mostAtOnce = (std::size_t{1} << 24) / sizeof(Item);
        items.clear();
        for (auto left = Number<std::size_t>(); left > 0;) {
            std::size_t const now = std::min(left, mostAtOnce);
            std::size_t const old = items.size();
            items.resize(old + now);
            wire.Receive(items.data() + old, now * sizeof(Item));
            left -= now;
        }
    }

    Wire& wire;
};
