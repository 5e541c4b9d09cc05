// SPDX-License-Identifier: MIT
#include "tests/vm/driver/typedtext.h"

#include "tests/support/textreader.h"
#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/keynames.h"
#include "tests/vm/driver/waiting.h"

namespace {

std::string withControls(std::string text)
{
    for (const auto &[sign, control] : {std::pair{std::string("¶"), "\n"}, {std::string("→"), "\t"}}) {
        for (std::size_t place = 0; (place = text.find(sign, place)) != std::string::npos;)
            text.replace(place, sign.size(), control);
    }
    return text;
}

/// Reads until `wanted` has arrived and all keys are up, or nothing comes any more, or something else has come.
std::string receivedText(EventNode &desktop, TextReader &reader, const std::string &wanted)
{
    while (wanted.starts_with(reader.text()) && (reader.text() != wanted || !desktop.down().empty())) {
        const auto key = desktop.next(patience);
        if (!key)
            break;
        if (key->value == 1)
            reader.press(static_cast<std::uint16_t>(key->code));
        else if (key->value == 0)
            reader.release(static_cast<std::uint16_t>(key->code));
    }
    return reader.text();
}

} // namespace

void expectTyped(Machine &machine, const Words &words)
{
    const auto key = usageNamed(word(words, 2));
    if (!key)
        throw Failure("no key \"" + words[2] + "\"");
    const std::string &layout = word(words, 4);
    const std::string wanted = withControls(word(words, 5));
    const std::shared_ptr<xkb_keymap> map = systemKeymap(layout.c_str());
    if (!map)
        throw Failure("no layout \"" + layout + "\"");
    machine.mustControl({"macro", "text", words[3], wanted, "--layout", layout, "--pause", "1"});
    TextReader reader(map.get());
    (void)machine.keyboard(words[1]).setDown(*key, true);
    const std::string came = receivedText(machine.desktop(), reader, wanted);
    (void)machine.keyboard(words[1]).setDown(*key, false);
    if (came != wanted || !reader.isAtRest())
        throw Failure("came: \"" + came + "\"" + (reader.isAtRest() ? "" : ", and keys are left down"));
}
