#include "chain/parser.h"

#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

#include "chain/error.h"
#include "chain/text.h"

namespace pxk::chain {
namespace {

constexpr char endOfText = '\0';

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isNamePart(char c) { return isLetter(c) || isDigit(c) || c == '_'; }
bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

class Parser {
  public:
    explicit Parser(std::string_view text) : text_(text) {}

    Chain chain() {
        Chain chain;
        for (skipBlanksAndLines(); !atEnd(); skipBlanksAndLines()) chain.statements.push_back(statement());
        if (chain.statements.empty()) throw ChainError(0, "the chain is empty; write a call such as InvertPXK");
        return chain;
    }

  private:
    Statement statement() {
        skipLeadingPic();
        Statement result{steps(), std::nullopt};
        skipBlanks();
        if (take('=')) {
            skipBlanksAndLines();
            result.assigned = value();
            skipBlanks();
        }
        if (!atEnd() && !isLineEnd(peek())) {
            fail(peek() == ')' ? "unmatched \")\"" : "expected \".\" and the next call, or the end of the line");
        }
        return result;
    }

    /// `pic.` and `pic = pic.` before a statement are optional and change nothing.
    void skipLeadingPic() {
        if (!takeWord("pic")) return;
        skipBlanks();
        if (take('=')) {
            skipBlanksAndLines();
            if (!takeWord("pic")) fail("expected \"pic.\" and a call after \"pic =\"");
            skipBlanks();
        }
        skipBlanksAndLines();
        if (!take('.')) fail("expected \".\" and a call after \"pic\"");
        skipBlanksAndLines();
    }

    std::vector<Step> steps() {
        std::vector<Step> result;
        do {
            skipBlanksAndLines();
            result.push_back(step());
        } while (takeDot());
        return result;
    }

    Step step() {
        Step step{position_, name("expected the name of a method or class"), {}, {}};
        skipBlanks();
        if (!take('(')) return step;
        const Nesting nested(*this);
        skipBlanksAndLines();
        if (take(')')) return step;
        do {
            skipBlanksAndLines();
            argumentOf(step);
            skipBlanksAndLines();
        } while (take(','));
        if (!take(')')) fail("expected \",\" or \")\"");
        return step;
    }

    /// One argument, by position or by name.
    void argumentOf(Step& step) {
        const std::size_t start = position_;
        if (isLetter(peek()) && !isWordOfTheLanguage()) {
            const std::string word = name("");
            skipBlanksAndLines();
            std::vector<Argument> index;
            const bool indexed = peek() == '(';
            if (indexed) index = indices();
            if (take('=')) {
                skipBlanksAndLines();
                step.properties.push_back({start, word, std::move(index), value()});
                return;
            }
            if (indexed || peek() == '.') {
                throw ChainError(start, "a call inside an argument starts with the current picture: pic." + word);
            }
            position_ = start;
        }
        if (!step.properties.empty())
            throw ChainError(start, "expected \"Name = value\": arguments by position come before those by name");
        step.arguments.push_back(value());
    }

    std::vector<Argument> indices() {
        const Nesting nested(*this);
        std::vector<Argument> result;
        do {
            ++position_;  // past the "(" or ","
            skipBlanksAndLines();
            result.push_back(value());
            skipBlanksAndLines();
        } while (peek() == ',');
        if (!take(')')) fail("expected \",\" or \")\"");
        skipBlanksAndLines();
        return result;
    }

    Argument value() {
        const std::size_t start = position_;
        const char c = peek();
        if (c == '"') return {start, text()};
        if (c == '&') return ampersandValue();
        if (isDigit(c) || c == '-' || c == '+' || c == '.') return number();
        if (takeWord("true")) return {start, true};
        if (takeWord("false")) return {start, false};
        if (takeWord("nil")) return {start, Nil{}};
        if (takeWord("pic")) return {start, FromPicture{takeDot() ? steps() : std::vector<Step>{}}};
        if (isLetter(c)) return {start, Variable{name("")}};
        fail("expected a value: a number, true, false, nil, &cRRGGBB, \"text\" or pic");
    }

    std::string text() {
        const std::size_t start = position_++;
        std::string result;
        while (true) {
            const char c = peek();
            if (atEnd() || isLineEnd(c)) throw ChainError(start, "this string has no closing quote on its line");
            if (c == endOfText) fail("a string cannot contain a NUL byte");
            ++position_;
            if (c == '"' && !take('"')) return result;
            result += c;
        }
    }

    /// &cRRGGBB or &hFF.
    Argument ampersandValue() {
        const std::size_t start = position_++;
        const char letter = peek();
        const bool isColor = letter == 'c' || letter == 'C';
        if (!isColor && letter != 'h' && letter != 'H') {
            throw ChainError(start, "a colour is written &cRRGGBB, a hexadecimal number &hFF");
        }
        const std::string_view digits = text_.substr(++position_);
        std::uint64_t number = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
        const auto length = static_cast<std::size_t>(end - digits.data());
        position_ += length;
        if (isColor && (length != 6 || isNamePart(peek()))) {
            throw ChainError(start, "a colour is &c followed by six hexadecimal digits: &cRRGGBB");
        }
        if (length == 0 || isNamePart(peek())) throw ChainError(start, "expected hexadecimal digits after &h");
        if (error != std::errc() || number > std::numeric_limits<std::uint32_t>::max()) {
            throw ChainError(start, "this number does not fit in 32 bits");
        }
        const auto word = static_cast<std::uint32_t>(number);
        if (isColor) return {start, Color{word}};
        return {start, static_cast<std::int32_t>(word)};
    }

    /// A whole number that fits 32 bits is an integer, every other number a double.
    Argument number() {
        const std::size_t start = position_;
        if (peek() == '-' || peek() == '+') ++position_;
        const std::size_t whole = skipDigits();
        bool integer = true;
        std::size_t fraction = 0;
        if (peek() == '.' && (isDigit(peek(1)) || whole == 0)) {
            ++position_;
            fraction = skipDigits();
            integer = false;
        }
        if (whole + fraction == 0) throw ChainError(start, "expected digits");
        if (peek() == 'e' || peek() == 'E') {
            ++position_;
            if (peek() == '-' || peek() == '+') ++position_;
            if (skipDigits() == 0) throw ChainError(start, "expected digits after the \"e\" of this number");
            integer = false;
        }
        // from_chars takes no plus sign.
        const std::size_t first = text_[start] == '+' ? start + 1 : start;
        const char* begin = text_.data() + first;
        const char* end = text_.data() + position_;
        std::int32_t small = 0;
        if (integer && std::from_chars(begin, end, small).ec == std::errc()) return {start, small};
        double real = 0;
        if (std::from_chars(begin, end, real).ec != std::errc()) {
            throw ChainError(start, "this number does not fit in a double");
        }
        return {start, real};
    }

    std::string name(const char* message) {
        const std::size_t start = position_;
        if (!isLetter(peek())) fail(message);
        while (isNamePart(peek())) ++position_;
        return std::string(text_.substr(start, position_ - start));
    }

    // ---- characters and words

    bool atEnd() const { return position_ == text_.size(); }

    char peek(std::size_t ahead = 0) const {
        return position_ + ahead < text_.size() ? text_[position_ + ahead] : endOfText;
    }

    bool take(char expected) {
        if (atEnd() || peek() != expected) return false;
        ++position_;
        return true;
    }

    bool seesWord(std::string_view word) const {
        return sameLetters(text_.substr(position_, word.size()), word) && !isNamePart(peek(word.size()));
    }

    bool takeWord(std::string_view word) {
        if (!seesWord(word)) return false;
        position_ += word.size();
        return true;
    }

    bool isWordOfTheLanguage() const {
        return seesWord("true") || seesWord("false") || seesWord("nil") || seesWord("pic");
    }

    /// A dot joins two calls across line ends too; without one, the line end is left to end the statement.
    bool takeDot() {
        const std::size_t start = position_;
        skipBlanksAndLines();
        if (take('.')) return true;
        position_ = start;
        return false;
    }

    std::size_t skipDigits() {
        const std::size_t start = position_;
        while (isDigit(peek())) ++position_;
        return position_ - start;
    }

    /// Skips blanks, comments and continued line ends.
    void skipBlanks() {
        while (isBlank(peek()) || skipComment() || skipContinuation()) {
            if (isBlank(peek())) ++position_;
        }
    }

    void skipBlanksAndLines() {
        for (skipBlanks(); isLineEnd(peek()); skipBlanks()) ++position_;
    }

    bool skipComment() {
        if (peek() != '\'' && !(peek() == '/' && peek(1) == '/') && !seesWord("rem")) return false;
        while (!atEnd() && !isLineEnd(peek())) ++position_;
        return true;
    }

    bool skipContinuation() {
        if (peek() != '_') return false;
        std::size_t ahead = 1;
        while (isBlank(peek(ahead))) ++ahead;
        if (!isLineEnd(peek(ahead))) return false;
        ahead += peek(ahead) == '\r' && peek(ahead + 1) == '\n' ? 2 : 1;
        position_ += ahead;
        return true;
    }

    [[noreturn]] void fail(const std::string& message) const { throw ChainError(position_, message); }

    /// Counts the open brackets: each is a recursive call of the parser.
    class Nesting {
      public:
        explicit Nesting(Parser& parser) : parser_(parser) {
            if (++parser_.depth_ > deepestNesting) {
                parser_.fail("calls are nested more than " + std::to_string(deepestNesting) + " deep");
            }
        }
        ~Nesting() { --parser_.depth_; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

      private:
        Parser& parser_;
    };

    std::string_view text_;
    std::size_t position_ = 0;
    int depth_ = 0;
};

}  // namespace

Chain parseChain(std::string_view text) { return Parser(text).chain(); }

}  // namespace pxk::chain
