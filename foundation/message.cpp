#include "foundation/message.h"

#include <algorithm>

namespace kestrel {
namespace {

using Argument = Message::Argument;

std::string textOf(const Argument& argument) {
  switch (argument.kind) {
    case Argument::Kind::number:
      return std::to_string(argument.number);
    case Argument::Kind::message:
      return argument.message.english();
    case Argument::Kind::text:
    case Argument::Kind::moment:
      break;
  }
  return argument.text;
}

}  // namespace

Message::Message() = default;
Message::Message(const Message&) = default;
Message::Message(Message&&) noexcept = default;
Message& Message::operator=(const Message&) = default;
Message& Message::operator=(Message&&) noexcept = default;
Message::~Message() = default;
Message::Message(const char* pattern, const char* one, std::int64_t count)
    : pattern_(pattern), one_(one), count_(count) {}

Message Message::verbatim(std::string text) {
  Message message;
  if (!text.empty()) message.arguments_.push_back({Argument::Kind::text, std::move(text), 0, {}});
  return message;
}

Message Message::moment(std::string local) {
  Message message;
  message.arguments_.push_back({Argument::Kind::moment, std::move(local), 0, {}});
  return message;
}

Message Message::arg(std::string_view name) && {
  arguments_.push_back({Argument::Kind::text, std::string(name), 0, {}});
  return std::move(*this);
}

Message Message::arg(Message message) && {
  arguments_.push_back({Argument::Kind::message, {}, 0, std::move(message)});
  return std::move(*this);
}

Message Message::argNumber(std::int64_t number) && {
  arguments_.push_back({Argument::Kind::number, {}, number, {}});
  return std::move(*this);
}

std::string Message::english() const {
  if (!pattern_) return arguments_.empty() ? std::string() : arguments_.front().text;
  std::string_view rest = one_ && count_ == 1 ? one_ : pattern_;
  std::string text;
  for (;;) {
    const std::size_t place = std::min(rest.find('%'), rest.size());
    text += rest.substr(0, place);
    rest.remove_prefix(place);
    if (rest.empty()) return text;
    const std::size_t number = rest.size() > 1 ? static_cast<unsigned char>(rest[1]) - '1' : 9U;
    if (number < arguments_.size()) {
      text += textOf(arguments_[number]);
      rest.remove_prefix(2);
    } else if (one_ && rest.starts_with("%Ln")) {
      text += std::to_string(count_);
      rest.remove_prefix(3);
    } else {
      text += '%';
      rest.remove_prefix(1);
    }
  }
}

Message joined(Message first, Message second) {
  if (first.empty()) return second;
  if (second.empty()) return first;
  return Message::tr("%1 %2").arg(std::move(first)).arg(std::move(second));
}

Message listed(std::span<const Message> parts, std::size_t more) {
  if (parts.empty()) return {};
  Message list = parts.front();
  for (std::size_t i = 1; i < parts.size(); ++i)
    list = (more == 0 && i + 1 == parts.size() ? Message::tr("%1 and %2") : Message::tr("%1, %2"))
               .arg(std::move(list))
               .arg(parts[i]);
  if (more == 0) return list;
  return Message::tr("%1 and %Ln more", "%1 and %Ln more", static_cast<std::int64_t>(more))
      .arg(std::move(list));
}

Message inQuotes(std::string_view name) { return Message::tr("\"%1\"").arg(name); }

std::string lineOf(const Message& message) {
  std::string line = message.english();
  const auto isLineEnd = [](char c) { return c == '\n' || c == '\r'; };
  std::replace_if(line.begin(), line.end(), isLineEnd, ' ');
  return line;
}

Message ended(Message message) {
  if (message.english().ends_with('.')) return message;
  return Message::tr("%1.").arg(std::move(message));
}

std::vector<std::string> english(std::span<const Message> messages) {
  std::vector<std::string> texts;
  texts.reserve(messages.size());
  for (const Message& message : messages) texts.push_back(message.english());
  return texts;
}

Message messageOf(const std::exception& error) {
  const auto* told = dynamic_cast<const MessageError*>(&error);
  return told ? told->message : Message::verbatim(error.what());
}

MessageError::MessageError(Message message_)
    : std::runtime_error(message_.english()), message(std::move(message_)) {}

}  // namespace kestrel
