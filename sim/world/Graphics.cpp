// Graphics state, textures, fonts and the text, numbers and boxes plugins draw.
#include "world/Graphics.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "world/Drawing.h"
#include "world/Screen.h"
#include "world/World.h"

namespace xpsim {
namespace {

// The most bytes of one text XPLMDrawString reads; the rest of a longer text is not drawn.
constexpr size_t kMostTextBytes = 65536;
// The most integer digits and decimals XPLMDrawNumber shows.
constexpr int kMostNumberDigits = 20;

struct GraphicsWorld {
    GraphicsState state;
    int bound[kTextureUnits] = {};
    int nextTexture = kFirstGeneratedTexture;
};

GraphicsWorld& graphics() {
    static GraphicsWorld g;
    return g;
}

// Indexed by XPLMFontID. The legacy panel and radio fonts (digits only where the instrument shows
// only numbers) keep their own sizes; the two user-interface fonts share the basic font's.
const FontMetrics kFonts[] = {
    {"xplmFont_Basic", 7, 12, 0},          {"xplmFont_Menus", 7, 12, 0},
    {"xplmFont_Metal", 8, 14, 0},          {"xplmFont_Led", 8, 12, 1},
    {"xplmFont_LedWide", 10, 12, 1},       {"xplmFont_PanelHUD", 8, 12, 0},
    {"xplmFont_PanelEFIS", 7, 10, 0},      {"xplmFont_PanelGPS", 7, 10, 0},
    {"xplmFont_RadiosGA", 9, 14, 1},       {"xplmFont_RadiosBC", 9, 14, 1},
    {"xplmFont_RadiosHM", 9, 14, 1},       {"xplmFont_RadiosGANarrow", 7, 14, 1},
    {"xplmFont_RadiosBCNarrow", 7, 14, 1}, {"xplmFont_RadiosHMNarrow", 7, 14, 1},
    {"xplmFont_Timer", 8, 12, 1},          {"xplmFont_FullRound", 9, 16, 1},
    {"xplmFont_SmallRound", 6, 10, 1},     {"xplmFont_Menus_Localized", 7, 12, 0},
    {"xplmFont_Proportional", 7, 12, 0},
};
constexpr int kFontCount = static_cast<int>(sizeof kFonts / sizeof kFonts[0]);

const FontMetrics* Font(int font) { return font >= 0 && font < kFontCount ? &kFonts[font] : nullptr; }

// The width of one byte in a font: the character width, or the proportional font's table.
int ByteWidth(const FontMetrics& font, unsigned char c) {
    return &font == &kFonts[xplmFont_Proportional] ? ProportionalWidth(c) : font.charWidth;
}

long long TextWidth(const FontMetrics& font, const char* text, size_t size) {
    long long width = 0;
    for (size_t i = 0; i < size; ++i) width += ByteWidth(font, static_cast<unsigned char>(text[i]));
    return width;
}

// The length of a NUL-terminated text, reading at most `most` bytes.
size_t BoundedLength(const char* text, size_t most) {
    size_t length = 0;
    while (length < most && text[length] != '\0') ++length;
    return length;
}

// A colour component as the screen shows it: clamped to 0 to 1 (NaN as 0).
float ScreenComponent(float c) { return std::isnan(c) ? 0.0f : std::fmin(1.0f, std::fmax(0.0f, c)); }

// A colour as the screen shows it: each component clamped.
std::string Colour(const float* rgb) {
    char text[64];
    std::snprintf(text, sizeof text, "rgb=%.3f,%.3f,%.3f", ScreenComponent(rgb[0]), ScreenComponent(rgb[1]),
                  ScreenComponent(rgb[2]));
    return text;
}

// Records a line of text and, in the 2-d phases, paints it on the screen.
void RecordText(const char* kind, long long x, long long y, const float* rgb, const FontMetrics& font,
                const char* text, size_t size) {
    RecordDrawing(std::string(kind) + " x=" + std::to_string(x) + " y=" + std::to_string(y) + " " + Colour(rgb) +
                  " font=" + font.name + " " + QuoteForRecord(text, size));
    if (!DrawingOnScreen()) return;
    Rgba colour;
    colour.r = ScreenComponent(rgb[0]);
    colour.g = ScreenComponent(rgb[1]);
    colour.b = ScreenComponent(rgb[2]);
    PaintText(double(x), double(y), text, size, int(&font - kFonts), colour);
}

// The checks every text-drawing function makes: the sim is drawing, the colour is there, the font
// exists. Reports and answers null when the call draws nothing.
const FontMetrics* CheckTextDrawing(const char* function, const float* rgb, XPLMFontID font) {
    if (!InDrawing()) {
        ReportMisuse(function, "called while the sim is not drawing (outside a draw callback or window); "
                               "nothing is drawn");
        return nullptr;
    }
    if (rgb == nullptr) {
        ReportMisuse(function, "the colour is null; nothing is drawn");
        return nullptr;
    }
    const FontMetrics* metrics = Font(font);
    if (metrics == nullptr) ReportMisuse(function, "no font " + std::to_string(font) + "; nothing is drawn");
    return metrics;
}

}  // namespace

// ------------------------------------------------------------------ state and textures

// Blending is GL's state, whether XPLMSetGraphicsState or glEnable/glDisable switched it last.
GraphicsState CurrentGraphicsState() {
    GraphicsState state = graphics().state;
    state.alphaBlending = GlBlending() ? 1 : 0;
    return state;
}

int BoundTexture(int unit) { return unit >= 0 && unit < kTextureUnits ? graphics().bound[unit] : 0; }

int GeneratedTextureCount() { return graphics().nextTexture - kFirstGeneratedTexture; }

void SetGraphicsState(int fog, int textureUnits, int lighting, int alphaTesting, int alphaBlending,
                      int depthTesting, int depthWriting) {
    if (textureUnits < 0 || textureUnits > kTextureUnits) {
        ReportMisuse("XPLMSetGraphicsState", "the number of texture units is 0 to " +
                                                 std::to_string(kTextureUnits) + ", not " +
                                                 std::to_string(textureUnits) + "; the state is unchanged");
        return;
    }
    GraphicsState& state = graphics().state;
    state.fog = fog != 0;
    state.textureUnits = textureUnits;
    state.lighting = lighting != 0;
    state.alphaTesting = alphaTesting != 0;
    state.depthTesting = depthTesting != 0;
    state.depthWriting = depthWriting != 0;
    // The simulator's GL follows: blending and texturing switch with the state.
    SetGlBlending(alphaBlending != 0);
    SetGlTexturing(state.textureUnits > 0);
}

void BindTexture2d(int texture, int unit) {
    const char* const function = "XPLMBindTexture2d";
    if (unit < 0 || unit >= kTextureUnits) {
        ReportMisuse(function, "texture unit " + std::to_string(unit) + " does not exist (0 to " +
                                   std::to_string(kTextureUnits - 1) + ")");
        return;
    }
    if (texture < 0) {
        ReportMisuse(function, "texture number " + std::to_string(texture) + " is negative");
        return;
    }
    graphics().bound[unit] = texture;
}

void GenerateTextureNumbers(int* out, int count) {
    const char* const function = "XPLMGenerateTextureNumbers";
    if (out == nullptr) {
        ReportMisuse(function, "the output array is null");
        return;
    }
    if (count < 0) {
        ReportMisuse(function, "the count " + std::to_string(count) + " is negative");
        return;
    }
    GraphicsWorld& g = graphics();
    if (count > INT_MAX - g.nextTexture) {
        ReportMisuse(function, "cannot hand out " + std::to_string(count) + " more texture numbers");
        return;
    }
    for (int i = 0; i < count; ++i) out[i] = g.nextTexture++;
}

int GetTexture(XPLMTextureID texture) {
    if (texture < xplm_Tex_GeneralInterface || texture > xplm_Tex_AircraftLiteMap) {
        ReportMisuse("XPLMGetTexture", "no texture id " + std::to_string(texture));
        return 0;
    }
    return kFirstSimTexture + texture;
}

// ------------------------------------------------------------------ fonts

bool FindFont(int font, FontMetrics& metrics) {
    const FontMetrics* found = Font(font);
    if (found != nullptr) metrics = *found;
    return found != nullptr;
}

int ProportionalWidth(unsigned char c) {
    if (std::strchr("!'.,:;il|", c) != nullptr && c != '\0') return 3;
    if (std::strchr(" \"()[]{}/\\`fjrtI", c) != nullptr && c != '\0') return 4;
    if (std::strchr("mwMW@%", c) != nullptr && c != '\0') return 11;
    if ((c >= 'A' && c <= 'Z') || c == '&') return 8;
    return kFonts[xplmFont_Proportional].charWidth;  // digits, the other characters, every other byte
}

void GetFontDimensions(XPLMFontID font, int* charWidth, int* charHeight, int* digitsOnly) {
    const FontMetrics* metrics = Font(font);
    if (metrics == nullptr) ReportMisuse("XPLMGetFontDimensions", "no font " + std::to_string(font));
    if (charWidth) *charWidth = metrics ? metrics->charWidth : 0;
    if (charHeight) *charHeight = metrics ? metrics->charHeight : 0;
    if (digitsOnly) *digitsOnly = metrics ? metrics->digitsOnly : 0;
}

float MeasureString(XPLMFontID font, const char* text, int numChars) {
    const char* const function = "XPLMMeasureString";
    const FontMetrics* metrics = Font(font);
    if (metrics == nullptr) {
        ReportMisuse(function, "no font " + std::to_string(font));
        return 0.0f;
    }
    if (text == nullptr) {
        ReportMisuse(function, "the text is null");
        return 0.0f;
    }
    if (numChars < 0) {
        ReportMisuse(function, "the character count " + std::to_string(numChars) + " is negative");
        return 0.0f;
    }
    // The text need not end within the count, but it ends at a NUL: nothing past one is read.
    const size_t size = BoundedLength(text, static_cast<size_t>(numChars));
    return static_cast<float>(TextWidth(*metrics, text, size));
}

// ------------------------------------------------------------------ drawing

void DrawTranslucentDarkBox(int left, int top, int right, int bottom) {
    if (!InDrawing()) {
        ReportMisuse("XPLMDrawTranslucentDarkBox",
                     "called while the sim is not drawing (outside a draw callback or window); nothing is drawn");
        return;
    }
    RecordDrawing("dark-box left=" + std::to_string(left) + " top=" + std::to_string(top) +
                  " right=" + std::to_string(right) + " bottom=" + std::to_string(bottom));
    if (DrawingOnScreen()) PaintRect(left, bottom, right, top, Colour(0x000000, kDarkBoxAlpha), Blend::Alpha);
}

void DrawText(const float* rgb, int x, int y, const char* text, size_t size, XPLMFontID font) {
    const FontMetrics* metrics = Font(font);
    if (metrics == nullptr || rgb == nullptr || text == nullptr || size == 0) return;
    RecordText("string", x, y, rgb, *metrics, text, std::min(size, kMostTextBytes));
}

void DrawString(const float* rgb, int x, int y, const char* text, const int* wrapWidth, XPLMFontID font) {
    const char* const function = "XPLMDrawString";
    const FontMetrics* metrics = CheckTextDrawing(function, rgb, font);
    if (metrics == nullptr) return;
    if (text == nullptr) {
        ReportMisuse(function, "the text is null; nothing is drawn");
        return;
    }
    const size_t size = BoundedLength(text, kMostTextBytes);
    if (size == 0) return;
    if (wrapWidth == nullptr) {
        RecordText("string", x, y, rgb, *metrics, text, size);
        return;
    }
    // Word wrap: words are the runs between spaces. A line takes words while it stays within the
    // width; the next word starts a new line one character height lower. The spaces where a line
    // breaks are dropped; a word wider than the width stands alone on its line.
    const long long width = *wrapWidth;
    long long lineY = y;
    size_t lineStart = 0, lineEnd = 0;  // the current line's bytes
    long long lineWidth = 0;
    bool haveLine = false;
    size_t at = 0;
    while (at < size) {
        const size_t spaces = at;
        while (at < size && text[at] == ' ') ++at;
        const size_t word = at;
        while (at < size && text[at] != ' ') ++at;
        if (word == at) break;  // only spaces are left
        const long long wordWidth = TextWidth(*metrics, text + word, at - word);
        if (!haveLine) {
            // The first line keeps the spaces the text starts with.
            lineStart = spaces;
            lineWidth = TextWidth(*metrics, text + spaces, word - spaces) + wordWidth;
            haveLine = true;
        } else {
            const long long joined = lineWidth + TextWidth(*metrics, text + spaces, word - spaces) + wordWidth;
            if (joined <= width) {
                lineWidth = joined;
            } else {
                RecordText("string", x, lineY, rgb, *metrics, text + lineStart, lineEnd - lineStart);
                lineY -= metrics->charHeight;
                lineStart = word;
                lineWidth = wordWidth;
            }
        }
        lineEnd = at;
    }
    if (haveLine) RecordText("string", x, lineY, rgb, *metrics, text + lineStart, lineEnd - lineStart);
}

bool FormatNumber(double value, int digits, int decimals, int showSign, std::string& text) {
    if (digits < 0 || digits > kMostNumberDigits || decimals < 0 || decimals > kMostNumberDigits) return false;
    const char* sign = showSign ? "+" : "";
    if (std::isnan(value)) {
        text = "nan";
        return true;
    }
    if (std::isinf(value)) {
        text = std::string(value < 0 ? "-" : sign) + "inf";
        return true;
    }
    // The largest double has 309 integer digits; with 20 decimals the text stays well within this.
    char body[400];
    std::snprintf(body, sizeof body, "%.*f", decimals, std::fabs(value));
    std::string number = body;
    // A value that rounds to zero shows no minus.
    if (value < 0 && number.find_first_of("123456789") != std::string::npos) sign = "-";
    const size_t point = number.find('.');
    const size_t integerDigits = point == std::string::npos ? number.size() : point;
    if (integerDigits < static_cast<size_t>(digits)) number.insert(0, static_cast<size_t>(digits) - integerDigits, '0');
    text = sign + number;
    return true;
}

void DrawNumber(const float* rgb, int x, int y, double value, int digits, int decimals, int showSign,
                XPLMFontID font) {
    const char* const function = "XPLMDrawNumber";
    const FontMetrics* metrics = CheckTextDrawing(function, rgb, font);
    if (metrics == nullptr) return;
    std::string text;
    if (!FormatNumber(value, digits, decimals, showSign, text)) {
        ReportMisuse(function, "digits " + std::to_string(digits) + " and decimals " + std::to_string(decimals) +
                                   " must each be 0 to " + std::to_string(kMostNumberDigits) + "; nothing is drawn");
        return;
    }
    RecordText("number", x, y, rgb, *metrics, text.data(), text.size());
}

void ResetGraphics() { graphics() = GraphicsWorld(); }

}  // namespace xpsim
