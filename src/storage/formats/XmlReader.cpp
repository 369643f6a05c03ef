#include "storage/formats/XmlReader.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <memory>
#include <type_traits>
#include <vector>

#include "base/CodePage.h"
#include "base/NoCase.h"

namespace marlune {
namespace {

// What one document may make the parser keep (names, open elements, declarations), and the longest
// piece of it that is looked at as one.
constexpr std::size_t kMemory = 64U << 20U;
constexpr std::size_t kLongestToken = 4U << 20U;

// The parser's memory, counted for the document that the thread is reading.
class Budget {
public:
    static const XML_Memory_Handling_Suite* suite() {
        static const XML_Memory_Handling_Suite kSuite = {&Budget::take, &Budget::resize,
                                                         &Budget::giveBack};
        return &kSuite;
    }

private:
    struct alignas(std::max_align_t) Head {
        std::size_t size;
    };

    static Head* headOf(void* block) { return static_cast<Head*>(block) - 1; }

    static void* take(std::size_t size) { return resize(nullptr, size); }

    static void* resize(void* block, std::size_t size) {
        const std::size_t before = block == nullptr ? 0 : headOf(block)->size;
        if (size > kMemory || used_ - before + size > kMemory) {
            return nullptr;
        }
        auto* head = static_cast<Head*>(
            std::realloc(block == nullptr ? nullptr : headOf(block), sizeof(Head) + size));
        if (head == nullptr) {
            return nullptr;
        }
        used_ = used_ - before + size;
        head->size = size;
        return head + 1;
    }

    static void giveBack(void* block) {
        if (block != nullptr) {
            used_ -= headOf(block)->size;
            std::free(headOf(block));
        }
    }

    static thread_local std::size_t used_;
};

thread_local std::size_t Budget::used_ = 0;

// The byte-order mark of UTF-16, either way.
bool startsWithWideMark(std::string_view bytes) {
    if (bytes.size() < 2) {
        return false;
    }
    const bool little = bytes[0] == '\xFF' && bytes[1] == '\xFE';
    const bool big = bytes[0] == '\xFE' && bytes[1] == '\xFF';
    return little || big;
}

// Whether the XML declaration, which begins the document, names a single-byte encoding of Western
// Europe.
bool saysSingleByte(const std::string& beginning) {
    const std::size_t end = beginning.find("?>");
    std::size_t from = beginning.find("encoding");
    if (beginning.rfind("<?xml", 0) != 0 || end == std::string::npos || from >= end) {
        return false;
    }
    from = beginning.find_first_of("\"'", from);
    const std::size_t to =
        from < end ? beginning.find(beginning[from], from + 1) : std::string::npos;
    if (to >= end) {
        return false;
    }
    const std::string name = beginning.substr(from + 1, to - from - 1);
    constexpr std::string_view kNames[] = {"iso-8859-1", "latin1", "windows-1252", "cp1252"};
    return std::any_of(std::begin(kNames), std::end(kNames),
                       [&](std::string_view each) { return equalsNoCase(each, name); });
}

// Bytes of a document on their way to the parser, which is strict about UTF-8.
class Utf8Filter {
public:
    explicit Utf8Filter(bool singleByte) : singleByte_(singleByte) {}

    // The bytes as UTF-8; the beginning of a character is kept for the next call unless last.
    std::string_view convert(std::string_view bytes, bool last) {
        out_.clear();
        kept_ += bytes;
        std::string_view rest = kept_;
        while (!rest.empty()) {
            const std::size_t plain = plainLength(rest);
            out_ += rest.substr(0, plain);
            rest.remove_prefix(plain);
            if (!rest.empty()) {
                const std::size_t taken = takeSpecial(rest, last);
                if (taken == 0) {
                    break;
                }
                rest.remove_prefix(taken);
            }
        }
        kept_.erase(0, kept_.size() - rest.size());
        return out_;
    }

    [[nodiscard]] std::size_t kept() const { return kept_.size(); }

private:
    static bool isPlain(char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x80 && (byte >= 0x20 || c == '\n' || c == '\r' || c == '\t');
    }

    static std::size_t plainLength(std::string_view text) {
        return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isPlain) -
                                        text.begin());
    }

    // A character that is not plain: how many bytes of it were taken, 0 when more must come first.
    std::size_t takeSpecial(std::string_view rest, bool last) {
        const auto lead = static_cast<unsigned char>(rest.front());
        if (lead < 0x80) {
            out_ += ' ';
            return 1;
        }
        const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (!singleByte_ && rest.size() < length && !last) {
            return 0;
        }
        const std::string_view character = rest.substr(0, length);
        if (!singleByte_ && character.size() == length && isUtf8(character)) {
            const bool none = character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF";
            out_ += none ? std::string_view(" ") : character;
            return length;
        }
        out_ += fromAnsi(rest.substr(0, 1));
        return 1;
    }

    bool singleByte_;
    std::string kept_;
    std::string out_;
};

std::string_view localName(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

class Reading {
public:
    Reading(ByteSource& source, XmlHandler& handler) : source_(source), handler_(handler) {}

    void run(const char* refusal) {
        // Larger than expat's own look-ahead, small enough to be cheap.
        std::vector<char> block(1U << 16U);
        std::string_view bytes = source_.read(block);
        const bool wide = startsWithWideMark(bytes);
        constexpr std::size_t kLongestDeclaration = 256;
        Utf8Filter filter(
            saysSingleByte(std::string(bytes.data(), std::min(bytes.size(), kLongestDeclaration))));
        makeParser(wide ? "UTF-16" : "UTF-8");
        for (bool last = false; !last;) {
            last = bytes.empty();
            parse(wide ? bytes : filter.convert(bytes, last), last, refusal);
            raw_ += bytes.size();
            startOfBlock(filter.kept());
            if (!last) {
                bytes = source_.read(block);
            }
        }
    }

private:
    struct Free {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    void makeParser(const char* encoding) {
        parser_.reset(XML_ParserCreate_MM(encoding, Budget::suite(), nullptr));
        if (!parser_) {
            throw std::bad_alloc();
        }
        XML_Parser parser = parser_.get();
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, &Reading::onStart, &Reading::onEnd);
        XML_SetCharacterDataHandler(parser, &Reading::onText);
        // With this handler nothing expands. Pretending that declarations stand elsewhere makes
        // names of entities that nobody declared no error.
        XML_SetDefaultHandler(parser, &Reading::onOther);
        XML_UseForeignDTD(parser, XML_TRUE);
    }

    void parse(std::string_view bytes, bool last, const char* refusal) {
        const auto status = XML_Parse(parser_.get(), bytes.data(), static_cast<int>(bytes.size()),
                                      last ? XML_TRUE : XML_FALSE);
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        if (status != XML_STATUS_OK) {
            fail(refused_ ? refusal : XML_ErrorString(XML_GetErrorCode(parser_.get())));
        }
        fed_ += bytes.size();
        const auto at = static_cast<std::size_t>(
            std::max<XML_Index>(XML_GetCurrentByteIndex(parser_.get()), 0));
        if (fed_ > at + kLongestToken) {
            fail("a piece of the document is too long");
        }
    }

    void startOfBlock(std::size_t kept) {
        blockFed_ = fed_;
        blockRaw_ = raw_ - kept;
    }

    // The parser counts the bytes that it was fed, of which there may be more than in the file.
    [[noreturn]] void fail(const char* reason) {
        const auto index = static_cast<std::size_t>(
            std::max<XML_Index>(XML_GetCurrentByteIndex(parser_.get()), 0));
        const std::size_t before = blockFed_ - std::min(blockFed_, index);
        const std::size_t offset =
            before > 0 ? blockRaw_ - std::min(blockRaw_, before) : blockRaw_ + (index - blockFed_);
        throw FileParseError(reason, source_.placeOf(offset));
    }

    // Exceptions do not travel through the parser, which is C.
    template <class Action>
    void guarded(Action&& action) {
        try {
            if (!failure_ && !refused_) {
                action();
            }
        } catch (...) {
            failure_ = std::current_exception();
            XML_StopParser(parser_.get(), XML_FALSE);
        }
    }

    static void onStart(void* self, const char* name, const char** attributes) {
        auto& me = *static_cast<Reading*>(self);
        me.guarded([&] {
            if (!me.handler_.start(localName(name), ++me.depth_, XmlAttributes(attributes))) {
                me.refused_ = true;
                XML_StopParser(me.parser_.get(), XML_FALSE);
            }
        });
    }
    static void onEnd(void* self, const char* /*name*/) {
        auto& me = *static_cast<Reading*>(self);
        me.guarded([&] { me.handler_.end(me.depth_--); });
    }
    static void onText(void* self, const char* text, int length) {
        auto& me = *static_cast<Reading*>(self);
        me.guarded([&] { me.handler_.text({text, static_cast<std::size_t>(length)}, me.depth_); });
    }
    // Comments, declarations, and entities, which stay in the text as they are written.
    static void onOther(void* self, const char* text, int length) {
        if (length > 0 && *text == '&') {
            onText(self, text, length);
        }
    }

    ByteSource& source_;
    XmlHandler& handler_;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, Free> parser_;
    std::size_t depth_ = 0;
    std::size_t raw_ = 0;  // bytes read
    std::size_t fed_ = 0;  // bytes given to the parser
    std::size_t blockRaw_ = 0;
    std::size_t blockFed_ = 0;
    bool refused_ = false;
    std::exception_ptr failure_;
};

}  // namespace

std::string_view XmlAttributes::value(std::string_view name) const {
    for (const char** pair = pairs_; *pair != nullptr; pair += 2) {
        if (localName(pair[0]) == name) {
            return pair[1];
        }
    }
    return {};
}

void readXml(ByteSource& source, XmlHandler& handler, const char* refusal) {
    Reading(source, handler).run(refusal);
}

}  // namespace marlune
