#include <QuorvaneScheduler/script/script_reader.h>

#include <QuorvaneScheduler/errors.h>
#include <QuorvaneScheduler/ole_date.h>

#include <cstdio>
#include <limits>

namespace quorvane::host {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isIdentStart(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; }
bool isIdentChar(char c) { return isIdentStart(c) || isDigit(c); }

struct Token {
    enum class Kind { End, Ident, Literal, Punct } kind = Kind::End;
    std::string text; // identifier or punctuation
    Variant value;    // literal
};

class Lexer {
public:
    explicit Lexer(std::string_view s) : s_(s) { advance(); }

    const Token& peek() const { return tok_; }
    Token next() {
        Token t = std::move(tok_);
        advance();
        return t;
    }
    bool atEnd() const { return tok_.kind == Token::Kind::End; }
    bool isPunct(char c) const { return tok_.kind == Token::Kind::Punct && tok_.text[0] == c; }
    bool isWord(std::string_view w) const { return tok_.kind == Token::Kind::Ident && tok_.text == w; }

    void expectPunct(char c) {
        if (!isPunct(c)) throw ScriptError(std::string("expected '") + c + "'" + near());
        advance();
    }
    std::string expectIdent(const char* what) {
        if (tok_.kind != Token::Kind::Ident) throw ScriptError(std::string("expected ") + what + near());
        return next().text;
    }
    void expectWord(std::string_view w) {
        if (!isWord(w)) throw ScriptError("expected '" + std::string(w) + "'" + near());
        advance();
    }
    void expectEnd() {
        if (!atEnd()) throw ScriptError("unexpected text" + near());
    }
    // The raw rest of the line from the current token on.
    std::string_view rest() const { return s_.substr(tokStart_); }

    std::string near() const {
        if (atEnd()) return " at end of line";
        return " near '" +
               std::string(s_.substr(tokStart_, std::min<std::size_t>(20, s_.size() - tokStart_))) + "'";
    }

private:
    void advance() {
        while (pos_ < s_.size() && isBlank(s_[pos_]))
            ++pos_;
        tokStart_ = pos_;
        tok_ = Token();
        if (pos_ >= s_.size()) return;
        const char c = s_[pos_];
        if (isIdentStart(c)) {
            const std::size_t b = pos_;
            while (pos_ < s_.size() && isIdentChar(s_[pos_]))
                ++pos_;
            tok_.kind = Token::Kind::Ident;
            tok_.text = std::string(s_.substr(b, pos_ - b));
            if (tok_.text == "True" || tok_.text == "False") {
                tok_.kind = Token::Kind::Literal;
                tok_.value = Variant(tok_.text == "True");
            } else if (tok_.text == "Empty") {
                tok_.kind = Token::Kind::Literal;
            } else if (tok_.text == "Nothing") {
                tok_.kind = Token::Kind::Literal;
                tok_.value = Variant(ObjectRef());
            }
        } else if (c == '"') {
            tok_.kind = Token::Kind::Literal;
            tok_.value = Variant(readString());
        } else if (c == '#') {
            const std::size_t close = s_.find('#', pos_ + 1);
            if (close == std::string_view::npos) throw ScriptError("unclosed date literal");
            OleDate d;
            if (!tryParseDate(s_.substr(pos_ + 1, close - pos_ - 1), d))
                throw ScriptError("bad date literal '" + std::string(s_.substr(pos_, close - pos_ + 1)) +
                                  "'");
            pos_ = close + 1;
            tok_.kind = Token::Kind::Literal;
            tok_.value = Variant(d);
        } else if (isDigit(c) || (c == '-' && pos_ + 1 < s_.size() && isDigit(s_[pos_ + 1]))) {
            tok_.kind = Token::Kind::Literal;
            tok_.value = readNumber();
        } else if (c == '(' || c == ')' || c == ',' || c == '=' || c == '.') {
            tok_.kind = Token::Kind::Punct;
            tok_.text = std::string(1, c);
            ++pos_;
        } else {
            throw ScriptError("unexpected character '" + std::string(1, c) + "'");
        }
    }

    std::string readString() {
        std::string out;
        ++pos_; // opening quote
        while (true) {
            if (pos_ >= s_.size()) throw ScriptError("unclosed string literal");
            const char c = s_[pos_++];
            if (c == '"') return out;
            if (c != '\\') {
                out += c;
                continue;
            }
            if (pos_ >= s_.size()) throw ScriptError("unclosed string literal");
            const char e = s_[pos_++];
            switch (e) {
            case '"':
                out += '"';
                break;
            case '\\':
                out += '\\';
                break;
            case 'r':
                out += '\r';
                break;
            case 'n':
                out += '\n';
                break;
            case 't':
                out += '\t';
                break;
            case 'x': {
                auto hex = [&](char h) -> int {
                    if (isDigit(h)) return h - '0';
                    if (h >= 'a' && h <= 'f') return h - 'a' + 10;
                    if (h >= 'A' && h <= 'F') return h - 'A' + 10;
                    throw ScriptError("bad \\x escape");
                };
                if (pos_ + 2 > s_.size()) throw ScriptError("bad \\x escape");
                out += static_cast<char>(hex(s_[pos_]) * 16 + hex(s_[pos_ + 1]));
                pos_ += 2;
                break;
            }
            default:
                throw ScriptError(std::string("bad escape \\") + e);
            }
        }
    }

    // -digits[.digits]: a whole number that fits 16 bits is an Integer, 32 bits a
    // Long; anything else a Double.
    Variant readNumber() {
        const std::size_t b = pos_;
        if (s_[pos_] == '-') ++pos_;
        while (pos_ < s_.size() && isDigit(s_[pos_]))
            ++pos_;
        bool fraction = false;
        if (pos_ < s_.size() && s_[pos_] == '.') {
            fraction = true;
            ++pos_;
            if (pos_ >= s_.size() || !isDigit(s_[pos_])) throw ScriptError("bad number literal");
            while (pos_ < s_.size() && isDigit(s_[pos_]))
                ++pos_;
        }
        if (pos_ < s_.size() && isIdentChar(s_[pos_])) throw ScriptError("bad number literal");
        const std::string text(s_.substr(b, pos_ - b));
        double d = 0;
        try {
            d = textToNumber(text);
        } catch (const RuntimeError&) {
            throw ScriptError("bad number literal '" + text + "'");
        }
        if (!fraction && d >= -32768 && d <= 32767) return Variant(static_cast<std::int16_t>(d));
        if (!fraction && d >= std::numeric_limits<std::int32_t>::min() &&
            d <= std::numeric_limits<std::int32_t>::max())
            return Variant(static_cast<std::int32_t>(d));
        return Variant(d);
    }

    std::string_view s_;
    std::size_t pos_ = 0;
    std::size_t tokStart_ = 0;
    Token tok_;
};

Expr parseValue(Lexer& lx);

Segment parseSegment(Lexer& lx, const char* what) {
    Segment seg;
    seg.name = lx.expectIdent(what);
    if (lx.isPunct('(')) {
        lx.next();
        seg.hasArgs = true;
        if (!lx.isPunct(')')) {
            seg.args.push_back(parseValue(lx));
            while (lx.isPunct(',')) {
                lx.next();
                seg.args.push_back(parseValue(lx));
            }
        }
        lx.expectPunct(')');
    }
    return seg;
}

Chain parseChain(Lexer& lx, const char* what) {
    Chain chain{parseSegment(lx, what)};
    while (lx.isPunct('.')) {
        lx.next();
        chain.push_back(parseSegment(lx, "a name after '.'"));
    }
    return chain;
}

// Values nest only through the arguments of references, so a line can nest at
// most as deep as it is long; the limit keeps a hostile line off the stack's end.
thread_local int valueDepth = 0;

Expr parseValue(Lexer& lx) {
    if (valueDepth > 64) throw ScriptError("value nests too deeply");
    ++valueDepth;
    struct Leave {
        ~Leave() { --valueDepth; }
    } leave;
    Expr e;
    if (lx.peek().kind == Token::Kind::Literal) {
        e.literal = lx.next().value;
        return e;
    }
    if (lx.peek().kind != Token::Kind::Ident) throw ScriptError("expected a value" + lx.near());
    e.kind = Expr::Kind::Reference;
    e.ref = parseChain(lx, "a value");
    return e;
}

Gesture parseGesture(Lexer& lx) {
    Gesture g;
    g.action = lx.expectIdent("a gesture");
    const std::string& a = g.action;
    if (a == "menu") {
        g.widget = parseSegment(lx, "a menu item");
    } else if (a == "calendar") {
        g.values.push_back(parseValue(lx));
    } else if (a == "key") {
        g.values.push_back(parseValue(lx));
        if (lx.isWord("in")) {
            lx.next();
            g.target = parseSegment(lx, "a field");
            g.hasTarget = true;
        }
    } else if (a == "pick") {
        g.widget = parseSegment(lx, "a pick list");
        g.values.push_back(parseValue(lx));
    } else if (a == "click" || a == "dblclick" || a == "rightclick") {
        g.widget = parseSegment(lx, "a widget");
        if (lx.isWord("at") || lx.isWord("on")) {
            g.aim = lx.next().text;
            g.values.push_back(parseValue(lx));
        } else if (a != "click" || g.widget.name == "dvwResource") {
            throw ScriptError("expected 'at' or 'on'" + lx.near());
        }
        if (a == "dblclick" && g.aim != "on") throw ScriptError("a double click aims 'on' an appointment");
    } else if (a == "slot" || a == "delete" || a == "date") {
        g.widget = parseSegment(lx, "a day view");
        g.values.push_back(parseValue(lx));
    } else if (a == "type") {
        g.widget = parseSegment(lx, "a widget");
        if (lx.isWord("at")) {
            g.aim = lx.next().text;
            g.values.push_back(parseValue(lx));
        }
        g.values.push_back(parseValue(lx));
    } else if (a == "resize") {
        g.widget = parseSegment(lx, "a day view");
        g.values.push_back(parseValue(lx));
        lx.expectWord("to");
        g.values.push_back(parseValue(lx));
    } else if (a == "drag") {
        g.widget = parseSegment(lx, "a day view");
        g.values.push_back(parseValue(lx));
        lx.expectWord("to");
        g.target = parseSegment(lx, "a day view");
        g.hasTarget = true;
        g.values.push_back(parseValue(lx));
    } else if (a == "scroll") {
        g.widget = parseSegment(lx, "a widget");
        if (lx.isWord("to")) {
            g.aim = lx.next().text;
        }
        g.values.push_back(parseValue(lx));
    } else {
        throw ScriptError("unknown gesture '" + a + "'");
    }
    lx.expectEnd();
    return g;
}

} // namespace

std::string_view significant(std::string_view line) {
    std::size_t b = 0, e = line.size();
    while (b < e && isBlank(line[b]))
        ++b;
    while (e > b && isBlank(line[e - 1]))
        --e;
    line = line.substr(b, e - b);
    if (line.empty() || line[0] == '\'') return {};
    return line;
}

Command parseCommand(std::string_view line) {
    Command cmd;
    cmd.text = std::string(significant(line));
    Lexer lx(cmd.text);
    const std::string verb = lx.expectIdent("a command");
    if (verb == "set" || verb == "let") {
        cmd.verb = verb == "set" ? Verb::Set : Verb::Let;
        if (cmd.verb == Verb::Set)
            cmd.target = {parseSegment(lx, "a property")};
        else
            cmd.target = {Segment{lx.expectIdent("a variable"), false, {}}};
        lx.expectPunct('=');
        cmd.value = parseValue(lx);
        lx.expectEnd();
    } else if (verb == "get") {
        cmd.verb = Verb::Get;
        cmd.target = parseChain(lx, "a name");
        lx.expectEnd();
    } else if (verb == "call") {
        cmd.verb = Verb::Call;
        cmd.target = {parseSegment(lx, "a method")};
        lx.expectEnd();
    } else if (verb == "answer") {
        cmd.verb = Verb::Answer;
        if (lx.isWord("Yes"))
            cmd.answerYes = true;
        else if (!lx.isWord("No"))
            throw ScriptError("expected Yes or No" + lx.near());
        lx.next();
        lx.expectEnd();
    } else if (verb == "on" || verb == "once") {
        cmd.verb = verb == "on" ? Verb::On : Verb::Once;
        cmd.event = lx.expectIdent("an event");
        cmd.handler = std::string(lx.rest());
        if (cmd.handler.empty()) throw ScriptError("expected a command after the event");
    } else if (verb == "off") {
        cmd.verb = Verb::Off;
        if (!lx.atEnd()) cmd.event = lx.expectIdent("an event");
        lx.expectEnd();
    } else if (verb == "user") {
        cmd.verb = Verb::User;
        cmd.gesture = parseGesture(lx);
    } else if (verb == "today") {
        cmd.verb = Verb::Today;
        cmd.value = parseValue(lx);
        lx.expectEnd();
    } else if (verb == "twips") {
        cmd.verb = Verb::Twips;
        const Token x = lx.next(), y = lx.next();
        if (x.kind != Token::Kind::Literal || y.kind != Token::Kind::Literal)
            throw ScriptError("expected two numbers");
        try {
            cmd.twipsX = x.value.toDouble();
            cmd.twipsY = y.value.toDouble();
        } catch (const RuntimeError&) {
            throw ScriptError("expected two numbers");
        }
        if (!(cmd.twipsX > 0 && cmd.twipsX < 1e4 && cmd.twipsY > 0 && cmd.twipsY < 1e4))
            throw ScriptError("twips per pixel out of range");
        lx.expectEnd();
    } else {
        throw ScriptError("unknown command '" + verb + "'");
    }
    return cmd;
}

std::string quote(std::string_view s) {
    std::string out = "\"";
    for (const char c : s) {
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 32) {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\x%02X", static_cast<unsigned char>(c));
                out += buf;
            } else {
                out += c;
            }
        }
    }
    return out + "\"";
}

} // namespace quorvane::host
