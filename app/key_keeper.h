// The file with the keys that clients seal with, and the receiver that has to know them.
#pragma once

#include "app/keys_page.h"
#include "model/receiver_model.h"
#include "platform/api/secrets.h"
#include "seal/key_list.h"

#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

// The keys of a file in the user's folder for state. Only the user can read it.
class KeyFile {
public:
    static constexpr const char* name = seal::keyFileName;

    KeyFile(std::string path, Secrets& secrets) : path(std::move(path)), secrets(secrets) {}

    // Empty when there is no file.
    std::vector<seal::NamedKey> read() const;

    // Makes the first key when there is none yet. The errors are texts for the user.
    std::expected<std::vector<seal::NamedKey>, std::string> readOrMake();

    // The key of this name, which is made when there is none. Absent when there are as many as there may be.
    std::expected<std::optional<seal::NamedKey>, std::string> keyNamed(std::string_view keyName);

    // Forgets the keys of this name, or all. How many they were.
    std::expected<std::size_t, std::string> forget(std::string_view keyName);
    std::expected<std::size_t, std::string> forgetAll();

private:
    std::expected<void, std::string> write(const std::vector<seal::NamedKey>& keys);
    seal::NamedKey makeKey(std::string_view keyName, const std::vector<seal::NamedKey>& others);

    const std::string path;
    Secrets& secrets;
};

// Tells the receiver the keys of the file, and whether only clients with one of them are let in, also when another
// program changes that. Main thread.
class KeyKeeper {
public:
    static constexpr Duration interval = seconds(2.0);

    // Beside the keys: a file with the word "paired" when only clients with a key are let in. LUMBRINE_CLIENTS wins.
    static constexpr const char* clientsFile = "/clients";

    // The two files are in `stateFolder`. Makes the first key where there is no file yet; reports what fails to the
    // receiver's log.
    KeyKeeper(Runtime& runtime, const std::string& stateFolder, Secrets& secrets, std::weak_ptr<ReceiverModel> model,
              const Bilingual& text);

    // What the user sees of it, and wants of it.
    KeysPage page() const;
    void forget(std::string_view keyName);
    void forgetAll();
    void letOnlyPairedIn(bool on); // lasts

private:
    void look();
    void report(const std::string& error);

    Runtime& runtime;
    const Bilingual text;
    KeyFile file;
    const std::string clientsPath;
    const std::weak_ptr<ReceiverModel> model;
    std::vector<seal::NamedKey> told;
    std::unique_ptr<RepeatingTimer> timer;
};

} // namespace lumbrine
