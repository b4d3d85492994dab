#include "tsRtm/printing/pages/CommandList.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>
#include <utility>

namespace tsRtm {
namespace {

using namespace platform;

// A command is the number of its kind and its parts; a text or a run of bytes is its length and its content.
// Most texts have a byte a character.
class Packer {
 public:
    explicit Packer(Bytes& bytes) : bytes_(bytes) {}

    template <class Value>
    requires std::is_trivially_copyable_v<Value>
    void put(const Value& value) { bytes_.append(reinterpret_cast<const char*>(&value), sizeof value); }
    void put(TextView text) {
        const bool narrow = std::ranges::all_of(text, [](char16_t c) { return c < 256; });
        put(static_cast<uint32>(text.size()));
        put(static_cast<uint8>(narrow));
        if (!narrow) {
            bytes_.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
            return;
        }
        const auto at = bytes_.size();
        bytes_.resize(at + text.size());
        std::ranges::transform(text, bytes_.begin() + static_cast<std::ptrdiff_t>(at),
                               [](char16_t c) { return static_cast<char>(c); });
    }
    void put(const Font& font) {
        put(TextView(font.name));
        put(font.height);
        put(font.escapement);
        put(static_cast<uint8>(font.bold | font.italic << 1 | font.underlined << 2));
    }
    void put(const TextOut& text) {
        put(text.from);
        put(TextView(text.text));
    }
    void put(const Shape& shape) {
        put(shape.kind);
        put(static_cast<uint32>(shape.places.size()));
        for (const auto place : shape.places) put(place);
    }
    void put(const Picture& picture) {
        put(picture.from);
        put(picture.to);
        put(static_cast<uint32>(picture.bytes.size()));
        bytes_ += picture.bytes;
    }

 private:
    Bytes& bytes_;
};

class Unpacker {
 public:
    explicit Unpacker(BytesView bytes) : rest_(bytes) {}

    bool ended() const noexcept { return rest_.empty(); }

    template <class Value>
    requires std::is_trivially_copyable_v<Value>
    void get(Value& value) {
        std::memcpy(&value, rest_.data(), sizeof value);
        rest_.remove_prefix(sizeof value);
    }
    void get(Text& text) {
        uint32 size = 0;
        uint8 narrow = 0;
        get(size);
        get(narrow);
        text.resize(size);
        if (narrow) {
            std::ranges::transform(rest_.substr(0, size), text.begin(),
                                   [](char c) { return static_cast<char16_t>(static_cast<uint8>(c)); });
            rest_.remove_prefix(size);
            return;
        }
        std::memcpy(text.data(), rest_.data(), size * sizeof(char16_t));
        rest_.remove_prefix(size * sizeof(char16_t));
    }
    void get(Font& font) {
        uint8 styles = 0;
        get(font.name);
        get(font.height);
        get(font.escapement);
        get(styles);
        font.bold = styles & 1;
        font.italic = styles & 2;
        font.underlined = styles & 4;
    }
    void get(TextOut& text) {
        get(text.from);
        get(text.text);
    }
    void get(Shape& shape) {
        uint32 places = 0;
        get(shape.kind);
        get(places);
        shape.places.resize(places);
        for (auto& place : shape.places) get(place);
    }
    void get(Picture& picture) {
        uint32 size = 0;
        get(picture.from);
        get(picture.to);
        get(size);
        picture.bytes = rest_.substr(0, size);
        rest_.remove_prefix(size);
    }

 private:
    BytesView rest_;
};

// The place of a kind among those of a DrawingCommand.
template <class Command, class... Kinds>
constexpr uint8 kindOf(const std::variant<Kinds...>*) {
    uint8 kind = 0;
    static_cast<void>(((std::is_same_v<Command, Kinds> || (++kind, false)) || ...));
    return kind;
}
constexpr const DrawingCommand* kAll = nullptr;

using Play = void (*)(Unpacker&, PageDevice&);
template <std::size_t... Kinds>
constexpr auto players(std::index_sequence<Kinds...>) {
    return std::array<Play, sizeof...(Kinds)>{[](Unpacker& from, PageDevice& device) {
        DrawingCommand command(std::in_place_index<Kinds>);
        from.get(std::get<Kinds>(command));
        device.draw(command);
    }...};
}

}  // namespace

template <class Command>
void CommandList::add(const Command& command) {
    Packer packer(bytes_);
    packer.put(kindOf<Command>(kAll));
    packer.put(command);
}
template void CommandList::add(const Pen&);
template void CommandList::add(const Brush&);
template void CommandList::add(const platform::Font&);
template void CommandList::add(const TextColour&);
template void CommandList::add(const TextBackground&);
template void CommandList::add(const Line&);
template void CommandList::add(const Shape&);
template void CommandList::add(const Picture&);

void CommandList::add(Place from, TextView text) {
    Packer packer(bytes_);
    packer.put(kindOf<TextOut>(kAll));
    packer.put(from);
    packer.put(text);
}

void CommandList::play(PageDevice& device) const {
    static constexpr auto kPlayers = players(std::make_index_sequence<std::variant_size_v<DrawingCommand>>());
    for (Unpacker rest(bytes_); !rest.ended();) {
        uint8 kind = 0;
        rest.get(kind);
        kPlayers[kind](rest, device);
    }
}

}  // namespace tsRtm
