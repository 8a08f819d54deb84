#pragma once

#include "tests/support/Process.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tallyvox {

/// The companion, installed in a folder of its own with recordings of which a test knows every
/// sample, and with virtual outputs that record what they get.
class Companion {
public:
    Companion();

    /// The recording of `number` as its file holds it, at 22050 Hz.
    static std::vector<float> recording(std::int64_t number);

    /// A folder for whatever the test writes.
    const std::filesystem::path& folder() const { return folder_.path(); }
    std::filesystem::path file(const std::string& name) const { return folder() / name; }
    /// What the virtual output that played has received.
    std::filesystem::path record() const { return file("record.wav"); }
    std::filesystem::path voice(std::int64_t number) const;

    /// `tallyvoxctl` with `arguments`, and with these outputs.
    Command command(const std::vector<std::string>& arguments,
                    const std::string& outputs = "virtual:8@48000,64@44100") const;
    /// Runs it to its end.
    Outcome run(const std::vector<std::string>& arguments,
                const std::string& outputs = "virtual:8@48000,64@44100") const;

private:
    TemporaryFolder installation_;
    TemporaryFolder folder_;
};

}
