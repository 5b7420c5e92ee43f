#include "platform/preferences.h"

#include <algorithm>
#include <utility>

#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

bool isTrue(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
  return !text.empty() && std::string_view("123456789yYtT").find(text[0]) != std::string_view::npos;
}

std::int64_t asInteger(const PreferenceValue* value) {
  if (!value) return 0;
  if (const auto* flag = std::get_if<bool>(value)) return *flag ? 1 : 0;
  if (const auto* number = std::get_if<std::int64_t>(value)) return *number;
  if (const auto* text = std::get_if<std::string>(value)) return integerValue(Value(*text));
  return 0;
}

}  // namespace

bool Preferences::boolean(std::string_view key) const {
  const auto found = value(key);
  if (!found) return false;
  if (const auto* text = std::get_if<std::string>(&*found)) return isTrue(*text);
  return asInteger(&*found) != 0;
}

std::int64_t Preferences::integer(std::string_view key) const {
  const auto found = value(key);
  return asInteger(found ? &*found : nullptr);
}

std::string Preferences::text(std::string_view key) const {
  auto found = value(key);
  if (!found || std::holds_alternative<std::vector<std::string>>(*found)) return {};
  if (auto* text = std::get_if<std::string>(&*found)) return std::move(*text);
  return std::to_string(asInteger(&*found));
}

std::vector<std::string> Preferences::textArray(std::string_view key) const {
  auto found = value(key);
  if (!found) return {};
  auto* texts = std::get_if<std::vector<std::string>>(&*found);
  return texts ? std::move(*texts) : std::vector<std::string>();
}

const PreferenceValue* InMemoryPreferences::find(std::string_view key) const {
  for (const Values* values : {&values_, &defaults_})
    if (const auto entry = values->find(key); entry != values->end()) return &entry->second;
  return nullptr;
}

void InMemoryPreferences::updateLive(std::string_view key) {
  if (const auto entry = live_.find(key); entry != live_.end())
    entry->second = asInteger(find(key));
}

std::optional<PreferenceValue> InMemoryPreferences::value(std::string_view key) const {
  const std::lock_guard lock(mutex_);
  const PreferenceValue* found = find(key);
  return found ? std::optional(*found) : std::nullopt;
}

void InMemoryPreferences::set(std::string_view key, PreferenceValue value) {
  const std::lock_guard one(changing_);
  {
    const std::lock_guard lock(mutex_);
    const auto [entry, added] = values_.try_emplace(std::string(key), value);
    if (!added && entry->second == value) return;
    entry->second = value;
    updateLive(key);
  }
  changed(key, std::move(value));
}

void InMemoryPreferences::remove(std::string_view key) {
  const std::lock_guard one(changing_);
  {
    const std::lock_guard lock(mutex_);
    const auto entry = values_.find(key);
    if (entry == values_.end()) return;
    values_.erase(entry);
    updateLive(key);
  }
  changed(key, std::nullopt);
}

void InMemoryPreferences::registerDefault(std::string_view key, PreferenceValue value) {
  const std::lock_guard lock(mutex_);
  defaults_.insert_or_assign(std::string(key), std::move(value));
  updateLive(key);
}

const std::atomic<std::int64_t>& InMemoryPreferences::liveInteger(std::string_view key) {
  const std::lock_guard lock(mutex_);
  const auto [entry, added] = live_.try_emplace(std::string(key), 0);
  if (added) entry->second = asInteger(find(key));
  return entry->second;
}

void InMemoryPreferences::setStored(std::string_view key, PreferenceValue value) {
  const std::lock_guard lock(mutex_);
  values_.insert_or_assign(std::string(key), std::move(value));
  updateLive(key);
}

void InMemoryPreferences::changed(std::string_view, const std::optional<PreferenceValue>&) {}

}  // namespace kestrel
