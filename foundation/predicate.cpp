#include "foundation/predicate.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "foundation/letter_case.h"
#include "foundation/predicate_tree.h"

namespace kestrel {
namespace {

constexpr std::array<std::pair<std::string_view, PredicateOperator>, 8> operators = {{
    {"==", PredicateOperator::equal},
    {"=", PredicateOperator::equal},
    {"!=", PredicateOperator::notEqual},
    {"beginswith", PredicateOperator::beginsWith},
    {"contains", PredicateOperator::contains},
    {"like", PredicateOperator::like},
    {"matches", PredicateOperator::matches},
    {"in", PredicateOperator::in},
}};

constexpr bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Borrowed texts become owned ones: predicates outlive the arguments that they were made from.
Value owned(const Value& value) {
  if (value.isText()) return std::string(value.text());
  return value.isNull() ? Value() : value;
}

class Parser {
 public:
  using Node = Predicate::Node;

  Parser(std::string_view text, const std::vector<PredicateArgument>& arguments)
      : text_(text), arguments_(arguments) {
    next();
  }

  Node whole() {
    Node node = alternatives();
    if (!token_.empty()) fail("AND, OR or the end is expected");
    if (used_ != arguments_.size()) fail("there are more arguments than placeholders");
    return node;
  }

 private:
  [[noreturn]] void fail(const std::string& problem) const {
    throw PredicateError(text_, start_, problem);
  }

  /// Moves to the next token; it is empty at the end of the text.
  void next() {
    const std::size_t end = start_ + token_.size();
    start_ = std::min(text_.find_first_not_of(" \t\r\n", end), text_.size());
    const std::string_view rest = text_.substr(start_);
    token_ = rest.substr(0, tokenSize(rest));
  }

  [[nodiscard]] std::size_t tokenSize(std::string_view rest) const {
    if (rest.empty()) return 0;
    const auto run = [rest](auto&& belongs) {
      const auto first = std::next(rest.begin());
      return static_cast<std::size_t>(std::find_if_not(first, rest.end(), belongs) - rest.begin());
    };
    if (isLetter(rest[0])) return run([](char c) { return isLetter(c) || isDigit(c) || c == '.'; });
    if (isDigit(rest[0]) || rest[0] == '-') return run(isDigit);
    if (rest[0] == '=' || rest[0] == '!') return run([](char c) { return c == '='; });
    if (rest[0] == '%') return std::min<std::size_t>(2, rest.size());
    if (rest[0] == '"' || rest[0] == '\'') {
      const std::size_t close = rest.find(rest[0], 1);
      if (close == std::string_view::npos) fail("the quotation mark has no partner");
      return close + 1;
    }
    return 1;
  }

  [[nodiscard]] bool atWord(std::string_view lowerCaseWord) const {
    return !token_.empty() && isLetter(token_[0]) && lowercase(token_) == lowerCaseWord;
  }

  bool take(std::string_view lowerCaseWord) {
    if (!atWord(lowerCaseWord)) return false;
    next();
    return true;
  }

  Node alternatives() {
    return joined("or", Node::Kind::disjunction, [this] { return conjunction(); });
  }

  Node conjunction() {
    return joined("and", Node::Kind::conjunction, [this] { return condition(); });
  }

  template <typename Part>
  Node joined(std::string_view word, Node::Kind kind, Part part) {
    Node first = part();
    if (!atWord(word)) return first;
    Node node;
    node.kind = kind;
    node.children.push_back(std::move(first));
    while (take(word)) node.children.push_back(part());
    return node;
  }

  Node condition() {
    constexpr int deepest = 200;
    if (depth_ == deepest) fail("the conditions are nested too deeply");
    ++depth_;
    Node node;
    if (take("not")) {
      node.kind = Node::Kind::negation;
      node.children.push_back(condition());
    } else if (token_ == "(") {
      next();
      node = alternatives();
      if (token_ != ")") fail("a closing parenthesis is expected");
      next();
    } else {
      node = comparison();
    }
    --depth_;
    return node;
  }

  Node comparison() {
    Node node;
    node.left = operand();
    const std::string word = lowercase(token_);
    const auto* found = std::find_if(operators.begin(), operators.end(),
                                     [&word](const auto& entry) { return entry.first == word; });
    if (found == operators.end()) fail("an operator is expected");
    node.op = found->second;
    next();
    const std::size_t rightStart = start_;
    node.right = operand();
    const bool list = node.right.kind == PredicateOperand::Kind::list;
    if (node.left.kind == PredicateOperand::Kind::list ||
        (list && node.op != PredicateOperator::in)) {
      throw PredicateError(text_, rightStart, "a list can only stand to the right of IN");
    }
    if (node.op == PredicateOperator::matches) node.pattern = compiled(node.right, rightStart);
    return node;
  }

  [[nodiscard]] std::shared_ptr<const icu::RegexPattern> compiled(const PredicateOperand& operand,
                                                                  std::size_t start) const {
    if (operand.kind != PredicateOperand::Kind::constant || !operand.constant.isText())
      throw PredicateError(text_, start, "MATCHES needs the text of a regular expression");
    const std::string_view source = operand.constant.text();
    UErrorCode status = U_ZERO_ERROR;
    UParseError where;
    std::shared_ptr<const icu::RegexPattern> pattern(icu::RegexPattern::compile(
        icu::UnicodeString::fromUTF8({source.data(), static_cast<std::int32_t>(source.size())}),
        where, status));
    if (U_FAILURE(status)) throw PredicateError(text_, start, "the regular expression is wrong");
    return pattern;
  }

  PredicateOperand operand() {
    PredicateOperand operand;
    if (token_.empty()) fail("a key or a value is expected");
    if (token_[0] == '%') {
      operand = placeholder();
    } else if (token_[0] == '"' || token_[0] == '\'') {
      operand.constant = std::string(token_.substr(1, token_.size() - 2));
    } else if (isLetter(token_[0])) {
      operand.kind = PredicateOperand::Kind::key;
      operand.key = token_;
    } else {
      std::int64_t number = 0;
      const char* end = token_.data() + token_.size();
      const auto [stop, error] = std::from_chars(token_.data(), end, number);
      if (error != std::errc() || stop != end) fail("a key or a value is expected");
      operand.constant = number;
    }
    next();
    return operand;
  }

  PredicateOperand placeholder() {
    if (token_ != "%K" && token_ != "%@" && token_ != "%i") fail("there is no such placeholder");
    if (used_ == arguments_.size()) fail("the placeholder has no argument");
    const PredicateArgument& argument = arguments_[used_++];
    const Value* value = argument.value();
    PredicateOperand operand;
    if (token_ == "%K") {
      if (!value || !value->isText()) fail("the argument is not the text of a key");
      operand.kind = PredicateOperand::Kind::key;
      operand.key = value->text();
    } else if (token_ == "%i") {
      if (!value || !value->isNumber()) fail("the argument is not a number");
      operand.constant = value->number();
    } else if (value) {
      operand.constant = owned(*value);
    } else {
      operand.kind = PredicateOperand::Kind::list;
      operand.list = std::make_shared<const ValueSet>(*argument.list());
    }
    return operand;
  }

  std::string_view text_;
  const std::vector<PredicateArgument>& arguments_;
  std::size_t used_ = 0;
  std::size_t start_ = 0;
  std::string_view token_;
  int depth_ = 0;
};

}  // namespace

PredicateError::PredicateError(std::string_view text, std::size_t offset,
                               const std::string& problem)
    : std::invalid_argument("Predicate \"" + std::string(text) + "\", offset " +
                            std::to_string(offset) + ": " + problem + "."),
      position(offset) {}

Predicate Predicate::parse(std::string_view text, const std::vector<PredicateArgument>& arguments) {
  return Predicate(std::make_shared<const Node>(Parser(text, arguments).whole()));
}

bool Predicate::evaluate(FunctionRef<Value(std::string_view)> lookup) const {
  return root_->evaluate(lookup);
}

}  // namespace kestrel
