#include "platform/session_bus.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <systemd/sd-bus.h>

namespace kestrel {
namespace {

int checked(int result) {
  if (result < 0) throw BusError("System.Error", std::strerror(-result));
  return result;
}

void append(sd_bus_message* message, const SessionBus::Arguments& arguments) {
  for (const SessionBus::Argument& argument : arguments) {
    if (const auto* text = std::get_if<std::string>(&argument))
      checked(sd_bus_message_append_basic(message, 's', text->c_str()));
    else
      checked(sd_bus_message_append(message, "b", std::get<bool>(argument) ? 1 : 0));
  }
}

/// A value of a dictionary as text; empty for what is neither text nor number.
std::string variantText(sd_bus_message* message) {
  char type = 0;
  const char* contents = nullptr;
  checked(sd_bus_message_peek_type(message, &type, &contents));
  union {
    const char* text;
    double real;
    std::uint64_t largest;
    std::int64_t signedLargest;
    std::uint32_t number;
    std::int32_t signedNumber;
  } value{};
  const auto read = [&] {
    checked(sd_bus_message_enter_container(message, 'v', contents));
    checked(sd_bus_message_read_basic(message, *contents, &value));
    checked(sd_bus_message_exit_container(message));
  };
  switch (std::strlen(contents) == 1 ? *contents : '\0') {
    case 's':
      return read(), value.text;
    case 'd':
      return read(), std::to_string(value.real);
    case 't':
      return read(), std::to_string(value.largest);
    case 'x':
      return read(), std::to_string(value.signedLargest);
    case 'u':
      return read(), std::to_string(value.number);
    case 'i':
    case 'b':
      return read(), std::to_string(value.signedNumber);
    default:
      checked(sd_bus_message_skip(message, "v"));
      return {};
  }
}

}  // namespace

void SessionBus::Release::operator()(sd_bus* bus) const noexcept { sd_bus_close_unref(bus); }
void SessionBus::Release::operator()(sd_bus_message* message) const noexcept {
  sd_bus_message_unref(message);
}

std::optional<SessionBus> SessionBus::open() {
  sd_bus* bus = nullptr;
  const int result = sd_bus_open_user(&bus);
  // No address, or nothing listens at it.
  if (result == -ENOMEDIUM || result == -ENXIO || result == -ENOENT || result == -ECONNREFUSED)
    return std::nullopt;
  checked(result);
  return SessionBus(bus);
}

SessionBus::Packet SessionBus::prepared(const BusObject& object, const char* member) const {
  sd_bus_message* made = nullptr;
  checked(sd_bus_message_new_method_call(bus_.get(), &made, object.service.c_str(),
                                         object.path.c_str(), object.interface.c_str(), member));
  Packet message(made);
  checked(sd_bus_message_set_auto_start(made, 0));
  return message;
}

SessionBus::Packet SessionBus::answer(const Packet& request) const {
  struct Error : sd_bus_error {
    ~Error() { sd_bus_error_free(this); }
  } error{};
  constexpr std::uint64_t longest = 30'000'000;  // microseconds: some block while they start
  sd_bus_message* reply = nullptr;
  if (sd_bus_call(bus_.get(), request.get(), longest, &error, &reply) < 0)
    throw BusError(error.name ? error.name : "", error.message ? error.message : "");
  return Packet(reply);
}

SessionBus::Packet SessionBus::ask(const BusObject& object, const char* member,
                                   const Arguments& arguments) const {
  const Packet message = prepared(object, member);
  append(message.get(), arguments);
  return answer(message);
}

bool SessionBus::hasOwner(const std::string& service) {
  const Packet reply =
      ask({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"}, "NameHasOwner",
          {service});
  int owned = 0;
  checked(sd_bus_message_read(reply.get(), "b", &owned));
  return owned != 0;
}

void SessionBus::call(const BusObject& object, const char* member, const Arguments& arguments) {
  static_cast<void>(ask(object, member, arguments));
}

void SessionBus::setProperties(const BusObject& object, const char* member, const std::string& of,
                               const std::map<std::string, Property>& properties) {
  const Packet message = prepared(object, member);
  sd_bus_message* m = message.get();
  append(m, {of});
  checked(sd_bus_message_open_container(m, 'a', "{sv}"));
  for (const auto& [name, value] : properties) {
    if (const auto* text = std::get_if<std::string>(&value))
      checked(sd_bus_message_append(m, "{sv}", name.c_str(), "s", text->c_str()));
    else if (const auto* real = std::get_if<double>(&value))
      checked(sd_bus_message_append(m, "{sv}", name.c_str(), "d", *real));
    else
      checked(sd_bus_message_append(m, "{sv}", name.c_str(), "u", std::get<std::uint32_t>(value)));
  }
  checked(sd_bus_message_close_container(m));
  static_cast<void>(answer(message));
}

std::vector<std::string> SessionBus::texts(const BusObject& object, const char* member,
                                           const Arguments& arguments) {
  const Packet reply = ask(object, member, arguments);
  std::vector<std::string> texts;
  checked(sd_bus_message_enter_container(reply.get(), 'a', "s"));
  for (const char* text = nullptr; checked(sd_bus_message_read(reply.get(), "s", &text)) > 0;)
    texts.emplace_back(text);
  return texts;
}

std::map<std::string, std::string> SessionBus::properties(const BusObject& object,
                                                          const char* member,
                                                          const Arguments& arguments) {
  const Packet reply = ask(object, member, arguments);
  std::map<std::string, std::string> values;
  checked(sd_bus_message_enter_container(reply.get(), 'a', "{sv}"));
  while (checked(sd_bus_message_enter_container(reply.get(), 'e', "sv")) > 0) {
    const char* name = nullptr;
    checked(sd_bus_message_read(reply.get(), "s", &name));
    values.emplace(name, variantText(reply.get()));
    checked(sd_bus_message_exit_container(reply.get()));
  }
  return values;
}

void SessionBus::activate(const std::string& service, const std::string& path, const char* action,
                          const Arguments& parameter) {
  std::string types;
  for (const Argument& argument : parameter)
    types += std::holds_alternative<std::string>(argument) ? 's' : 'b';
  const Packet message = prepared({service, path, "org.gtk.Actions"}, "Activate");
  sd_bus_message* m = message.get();
  checked(sd_bus_message_append(m, "s", action));
  checked(sd_bus_message_open_container(m, 'a', "v"));
  checked(sd_bus_message_open_container(m, 'v', ("(" + types + ")").c_str()));
  checked(sd_bus_message_open_container(m, 'r', types.c_str()));
  append(m, parameter);
  for (int i = 0; i < 3; ++i) checked(sd_bus_message_close_container(m));
  checked(sd_bus_message_append(m, "a{sv}", 0));
  static_cast<void>(answer(message));
}

}  // namespace kestrel
