// What the newest document, its packed scene and the ends of the logs say, in words.
#include "packaging/diagnostics/findings.h"

namespace diagnostics {

namespace {

constexpr const char* kError = "ERROR";

void judge_document(const DocumentFact& document, Findings& findings) {
    if (!document.exists) {
        findings.fine(Message::no_document);
    } else if (!document.readable) {
        findings.problem({Message::document_damaged, {{document.written}, {std::to_string(document.size)}}},
                         {Message::cure_submit_again, {}});
    } else {
        findings.fine(
            Message::document,
            {{document.written}, {document.scene, Origin::user}, {std::to_string(document.cameras)}});
    }
}

void judge_archive(const LastSubmission& last, Findings& findings) {
    const ArchiveFact& archive = last.archive;
    if (last.document.readable && !archive.of_document) {
        findings.warning({Message::archive_absent, {}}, {Message::cure_archive_absent, {}});
    }
    if (!archive.exists) {
        return;
    }
    std::vector<Argument> names = {
        {archive.name, Origin::archive}, {archive.written}, {std::to_string(archive.size)}};
    switch (archive.test) {
    case ArchiveTest::not_tested:
        break;
    case ArchiveTest::whole:
        findings.fine(archive.of_document ? Message::archive_whole : Message::newest_archive_whole, names);
        break;
    case ArchiveTest::damaged:
        names.push_back({archive.said});
        findings.problem({Message::archive_damaged, names}, {Message::cure_submit_again, {}});
        break;
    case ArchiveTest::not_ended:
        names.push_back({std::to_string(kArchiveSeconds)});
        findings.warning({Message::archive_untested, names}, {Message::cure_archive_untested, {}});
        break;
    }
}

void judge_channel(const ChannelFact& channel, Findings& findings) {
    if (channel.line.empty()) {
        findings.fine(Message::channel_empty, {{channel.name}});
        return;
    }
    const LogLine line = log_line(channel.line);
    const LogMeaning meaning = log_meaning(channel.name, line.text);
    Sentence what = {meaning.english.empty() ? Message::channel_ends : Message::channel_means,
                     {{channel.name},
                      {line.time},
                      {line.text, Origin::user},
                      {meaning.english, Origin::ours, meaning.chinese}}};
    if (line.level == kError) {
        findings.warning(std::move(what), {Message::cure_channel, {}});
    } else {
        findings.fine(what.message, what.arguments);
    }
}

} // namespace

void judge_last_submission(const Facts& facts, Findings& findings) {
    if (!facts.has_data_folder) {
        return;
    }
    judge_document(facts.last.document, findings);
    judge_archive(facts.last, findings);
    for (const ChannelFact& channel : facts.last.channels) {
        judge_channel(channel, findings);
    }
}

} // namespace diagnostics
