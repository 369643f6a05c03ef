// What the sentence procedures of one control share: the listener, the readers of sentences, and
// StopNMEA.
//
// Sentences are wire text (Windows-1252, one character a byte); see Sentence.h.
#pragma once

#include <string>

namespace marlune {

struct NmeaState {
    // A sentence was found. While the listener runs: the last matching sentence had a position.
    bool found = false;
    // The listener runs: sentences go to the event PhraseNMEA instead of lastSentence.
    bool sentenceEvent = false;
    // What to look for, in capitals and UTF-8; alternatives stand between "|".
    std::string codeFilter;
    std::string lastSentence;
    // Set by StopNMEA, cleared when a listener starts.
    bool stopRequested = false;

    // The sentence under assembly. It outlives a call, so that one cut by the end of a listening
    // time is completed by the next.
    std::string sentence;
    bool inSentence = false;
};

}  // namespace marlune
