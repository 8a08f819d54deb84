import QtQuick
import Tallyvox

// A line of text, as it is.
Text {
    textFormat: Text.PlainText
    font: Typeface.plain(Typeface.Body)
    color: "white"
    Spoken.role: Spoken.Text
    Spoken.name: text
}
