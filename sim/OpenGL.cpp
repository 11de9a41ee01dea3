// OpenGL: the immediate-mode calls plugins draw their own 2-d art with, taken by xpsim.
//
// XPLM_64.so exports these under their GL names and is loaded globally before any plugin, so a
// plugin's references to them bind here even when the plugin links libGL: a headless run needs no GPU
// and no display. What a plugin draws with them goes onto the screen (world/Screen.h) in the 2-d
// drawing phases and into the frame's drawing record, one `gl` line per glBegin/glEnd pair or glRect:
//
//   gl mode=GL_QUADS vertices=4 rgba=1.000,0.000,0.000,1.000 blend=off texture=0 points=(10,10);(20,10);(20,20);(10,20)
//
// The coordinates are screen pixels after the modelview translation and scale; the colour is the mean
// of the vertices' colours (shapes are painted flat, each triangle, quad or line in the mean colour
// of its own vertices). In the 3-d phases primitives are recorded with `world=1` and their z, and not
// painted: xpsim has no 3-d view. Calls made while the sim is not drawing do nothing (noted once a
// run). Textures are not sampled: a textured shape is painted in its colour.
#include <GL/gl.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "world/Drawing.h"
#include "world/Screen.h"
#include "world/World.h"

namespace {

using xpsim::Blend;
using xpsim::Rgba;
using xpsim::ScreenPoint;

// The most vertices one glBegin/glEnd pair keeps; the rest are dropped (noted).
constexpr size_t kMostVertices = 1000000;
// The most points a record line lists.
constexpr size_t kMostRecordedPoints = 256;
// OpenGL's smallest guaranteed modelview stack depth.
constexpr size_t kMatrixStackDepth = 32;

struct Vertex {
    double x, y, z;
    Rgba colour;
};

// A 2-d modelview: x' = sx * x + tx, y' = sy * y + ty.
struct Matrix {
    double sx = 1, sy = 1, tx = 0, ty = 0;
};

struct GlState {
    Rgba colour{1.0f, 1.0f, 1.0f, 1.0f};  // GL's current colour starts opaque white
    float lineWidth = 1.0f;
    float pointSize = 1.0f;
    bool blend = false;
    bool texture = false;
    // The simulator draws its 2-d art with this blend function and expects plugins to leave it so:
    // a plugin that only switches blending on (XPLMSetGraphicsState) blends with it.
    GLenum sourceFactor = GL_SRC_ALPHA;
    GLenum destinationFactor = GL_ONE_MINUS_SRC_ALPHA;
    GLenum matrixMode = GL_MODELVIEW;
    std::vector<Matrix> modelview{Matrix()};
    size_t otherDepth = 1;  // the projection and texture stacks: kept only as depths
    bool inBegin = false;
    GLenum mode = GL_POINTS;
    std::vector<Vertex> vertices;
    bool vertexOverflow = false;
    bool outsideNoted = false;
    bool blendNoted = false;
};

GlState& gl() {
    static GlState state;
    return state;
}

// Calls outside the drawing phases change nothing; the first one in a run is noted.
bool Drawing(const char* function) {
    if (xpsim::InDrawing()) return true;
    GlState& g = gl();
    if (!g.outsideNoted) {
        g.outsideNoted = true;
        xpsim::Note(std::string("OpenGL calls made while the sim is not drawing are ignored (the first: ") + function +
                    ")");
    }
    return false;
}

float Clamp01(float v) { return std::isnan(v) ? 0.0f : std::fmin(1.0f, std::fmax(0.0f, v)); }

void SetColour(float r, float g, float b, float a) {
    gl().colour.r = Clamp01(r);
    gl().colour.g = Clamp01(g);
    gl().colour.b = Clamp01(b);
    gl().colour.a = Clamp01(a);
}

void AddVertex(double x, double y, double z) {
    GlState& g = gl();
    if (!g.inBegin || !xpsim::InDrawing()) return;
    if (g.vertices.size() >= kMostVertices) {
        g.vertexOverflow = true;
        return;
    }
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z)) return;
    const Matrix& m = g.modelview.back();
    g.vertices.push_back({m.sx * x + m.tx, m.sy * y + m.ty, z, g.colour});
}

Blend CurrentBlend(Rgba& colour) {
    GlState& g = gl();
    if (!g.blend) return Blend::Opaque;
    const GLenum s = g.sourceFactor, d = g.destinationFactor;
    if (s == GL_SRC_ALPHA && d == GL_ONE_MINUS_SRC_ALPHA) return Blend::Alpha;
    if (s == GL_ONE && d == GL_ONE_MINUS_SRC_ALPHA) return Blend::Premultiplied;
    if (s == GL_SRC_ALPHA && d == GL_ONE) return Blend::Additive;
    if (s == GL_ONE && d == GL_ONE) {
        colour.a = 1.0f;
        return Blend::Additive;
    }
    if (s == GL_ONE && d == GL_ZERO) return Blend::Opaque;
    if (!g.blendNoted) {
        g.blendNoted = true;
        char text[128];
        std::snprintf(text, sizeof text, "glBlendFunc(0x%x, 0x%x) is painted as alpha blending", s, d);
        xpsim::Note(text);
    }
    return Blend::Alpha;
}

const char* BlendName(Blend blend) {
    switch (blend) {
        case Blend::Opaque: return "off";
        case Blend::Alpha: return "alpha";
        case Blend::Additive: return "additive";
        case Blend::Premultiplied: return "premultiplied";
    }
    return "off";
}

const char* ModeName(GLenum mode) {
    switch (mode) {
        case GL_POINTS: return "GL_POINTS";
        case GL_LINES: return "GL_LINES";
        case GL_LINE_LOOP: return "GL_LINE_LOOP";
        case GL_LINE_STRIP: return "GL_LINE_STRIP";
        case GL_TRIANGLES: return "GL_TRIANGLES";
        case GL_TRIANGLE_STRIP: return "GL_TRIANGLE_STRIP";
        case GL_TRIANGLE_FAN: return "GL_TRIANGLE_FAN";
        case GL_QUADS: return "GL_QUADS";
        case GL_QUAD_STRIP: return "GL_QUAD_STRIP";
        case GL_POLYGON: return "GL_POLYGON";
        default: return nullptr;
    }
}

Rgba Mean(const std::vector<Vertex>& vertices, const std::vector<size_t>& which) {
    Rgba mean;
    mean.a = 0;
    for (size_t i : which) {
        mean.r += vertices[i].colour.r;
        mean.g += vertices[i].colour.g;
        mean.b += vertices[i].colour.b;
        mean.a += vertices[i].colour.a;
    }
    const float n = which.empty() ? 1.0f : float(which.size());
    mean.r /= n;
    mean.g /= n;
    mean.b /= n;
    mean.a = which.empty() ? 1.0f : mean.a / n;
    return mean;
}

std::string Number(double v) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", v);
    return text;
}

void Record(const char* mode, const std::vector<Vertex>& vertices, const Rgba& colour, Blend blend, bool world) {
    GlState& g = gl();
    char rgba[64];
    std::snprintf(rgba, sizeof rgba, "%.3f,%.3f,%.3f,%.3f", colour.r, colour.g, colour.b, colour.a);
    std::string line = std::string("gl mode=") + mode + " vertices=" + std::to_string(vertices.size()) +
                       " rgba=" + rgba + " blend=" + BlendName(blend) + " texture=" + (g.texture ? "1" : "0");
    const std::string kind = mode;
    if (kind == "GL_LINES" || kind == "GL_LINE_STRIP" || kind == "GL_LINE_LOOP")
        line += " width=" + Number(g.lineWidth);
    if (kind == "GL_POINTS") line += " size=" + Number(g.pointSize);
    if (world) line += " world=1";
    line += " points=";
    for (size_t i = 0; i < vertices.size() && i < kMostRecordedPoints; ++i) {
        line += (i ? ";(" : "(") + Number(vertices[i].x) + "," + Number(vertices[i].y);
        if (world) line += "," + Number(vertices[i].z);
        line += ")";
    }
    if (vertices.size() > kMostRecordedPoints)
        line += ";...(" + std::to_string(vertices.size() - kMostRecordedPoints) + " more)";
    xpsim::RecordDrawing(line);
}

// Paints one primitive's vertices (given by index) as a filled shape.
void Fill(const std::vector<Vertex>& v, const std::vector<size_t>& which) {
    std::vector<ScreenPoint> points;
    for (size_t i : which) points.push_back({v[i].x, v[i].y});
    Rgba colour = Mean(v, which);
    const Blend blend = CurrentBlend(colour);
    xpsim::PaintPolygon(points, colour, blend);
}

// Lines and points light the pixel their integer coordinates name: they are painted through the
// pixels' centres.
void Stroke(const std::vector<Vertex>& v, const std::vector<size_t>& which, bool closed) {
    std::vector<ScreenPoint> points;
    for (size_t i : which) points.push_back({v[i].x + 0.5, v[i].y + 0.5});
    Rgba colour = Mean(v, which);
    const Blend blend = CurrentBlend(colour);
    xpsim::PaintPolyline(points, closed, gl().lineWidth, colour, blend);
}

void Paint(GLenum mode, const std::vector<Vertex>& v) {
    const size_t n = v.size();
    switch (mode) {
        case GL_POINTS:
            for (size_t i = 0; i < n; ++i) {
                Rgba colour = v[i].colour;
                const Blend blend = CurrentBlend(colour);
                xpsim::PaintPoints({{v[i].x + 0.5, v[i].y + 0.5}}, gl().pointSize, colour, blend);
            }
            break;
        case GL_LINES:
            for (size_t i = 0; i + 1 < n; i += 2) Stroke(v, {i, i + 1}, false);
            break;
        case GL_LINE_STRIP:
        case GL_LINE_LOOP: {
            std::vector<size_t> all;
            for (size_t i = 0; i < n; ++i) all.push_back(i);
            if (n >= 2) Stroke(v, all, mode == GL_LINE_LOOP);
            break;
        }
        case GL_TRIANGLES:
            for (size_t i = 0; i + 2 < n; i += 3) Fill(v, {i, i + 1, i + 2});
            break;
        case GL_TRIANGLE_STRIP:
            for (size_t i = 0; i + 2 < n; ++i) Fill(v, {i, i + 1, i + 2});
            break;
        case GL_TRIANGLE_FAN:
            for (size_t i = 1; i + 1 < n; ++i) Fill(v, {0, i, i + 1});
            break;
        case GL_QUADS:
            for (size_t i = 0; i + 3 < n; i += 4) Fill(v, {i, i + 1, i + 2, i + 3});
            break;
        case GL_QUAD_STRIP:
            for (size_t i = 0; i + 3 < n; i += 2) Fill(v, {i, i + 1, i + 3, i + 2});
            break;
        case GL_POLYGON: {
            std::vector<size_t> all;
            for (size_t i = 0; i < n; ++i) all.push_back(i);
            if (n >= 3) Fill(v, all);
            break;
        }
        default:
            break;
    }
}

// Draws a finished primitive: the record line, and the screen in the 2-d phases.
void Emit(const char* mode, GLenum glMode, const std::vector<Vertex>& vertices) {
    if (vertices.empty()) return;
    std::vector<size_t> all;
    for (size_t i = 0; i < vertices.size(); ++i) all.push_back(i);
    Rgba colour = Mean(vertices, all);
    const Blend blend = CurrentBlend(colour);
    const bool onScreen = xpsim::DrawingOnScreen();
    Record(mode, vertices, colour, blend, !onScreen);
    if (onScreen) Paint(glMode, vertices);
}

void Rect(double x1, double y1, double x2, double y2) {
    if (!Drawing("glRect")) return;
    if (gl().inBegin) {
        xpsim::ReportMisuse("glRect", "called between glBegin and glEnd; nothing is drawn");
        return;
    }
    GlState& g = gl();
    const Matrix& m = g.modelview.back();
    auto at = [&](double x, double y) { return Vertex{m.sx * x + m.tx, m.sy * y + m.ty, 0.0, g.colour}; };
    if (!std::isfinite(x1) || !std::isfinite(y1) || !std::isfinite(x2) || !std::isfinite(y2)) return;
    Emit("glRect", GL_POLYGON, {at(x1, y1), at(x2, y1), at(x2, y2), at(x1, y2)});
}

void SetCapability(GLenum capability, bool enabled) {
    if (capability == GL_BLEND) gl().blend = enabled;
    if (capability == GL_TEXTURE_2D) gl().texture = enabled;
}

Matrix* CurrentMatrix() { return gl().matrixMode == GL_MODELVIEW ? &gl().modelview.back() : nullptr; }

}  // namespace

namespace xpsim {

void ResetOpenGL() { gl() = GlState(); }

void SetGlBlending(bool enabled) { gl().blend = enabled; }
bool GlBlending() { return gl().blend; }

void SetGlTexturing(bool enabled) { gl().texture = enabled; }

// The sim sets its matrices up for every phase; a primitive left open is dropped.
void ResetGlForPhase() {
    GlState& g = gl();
    if (g.inBegin) ReportMisuse("glBegin", "no glEnd before the end of the drawing phase; the primitive is dropped");
    g.inBegin = false;
    g.vertices.clear();
    g.modelview.assign(1, Matrix());
    g.otherDepth = 1;
    g.matrixMode = GL_MODELVIEW;
}

}  // namespace xpsim

// ------------------------------------------------------------------ the GL entry points

extern "C" {

void glBegin(GLenum mode) {
    if (!Drawing("glBegin")) return;
    GlState& g = gl();
    if (g.inBegin) {
        xpsim::ReportMisuse("glBegin", "called again before glEnd; ignored");
        return;
    }
    if (ModeName(mode) == nullptr) {
        char text[64];
        std::snprintf(text, sizeof text, "unknown primitive mode 0x%x; nothing is drawn", mode);
        xpsim::ReportMisuse("glBegin", text);
        return;
    }
    g.inBegin = true;
    g.mode = mode;
    g.vertices.clear();
    g.vertexOverflow = false;
}

void glEnd(void) {
    if (!Drawing("glEnd")) return;
    GlState& g = gl();
    if (!g.inBegin) {
        xpsim::ReportMisuse("glEnd", "no glBegin before it");
        return;
    }
    g.inBegin = false;
    if (g.vertexOverflow)
        xpsim::ReportMisuse("glEnd", "more than " + std::to_string(kMostVertices) +
                                         " vertices in one primitive; the rest are dropped");
    std::vector<Vertex> vertices;
    vertices.swap(g.vertices);
    Emit(ModeName(g.mode), g.mode, vertices);
}

void glVertex2i(GLint x, GLint y) { AddVertex(x, y, 0); }
void glVertex2f(GLfloat x, GLfloat y) { AddVertex(x, y, 0); }
void glVertex2d(GLdouble x, GLdouble y) { AddVertex(x, y, 0); }
void glVertex3f(GLfloat x, GLfloat y, GLfloat z) { AddVertex(x, y, z); }
void glVertex3d(GLdouble x, GLdouble y, GLdouble z) { AddVertex(x, y, z); }
void glVertex2iv(const GLint* v) {
    if (v != nullptr) AddVertex(v[0], v[1], 0);
}
void glVertex2fv(const GLfloat* v) {
    if (v != nullptr) AddVertex(v[0], v[1], 0);
}
void glVertex3fv(const GLfloat* v) {
    if (v != nullptr) AddVertex(v[0], v[1], v[2]);
}

void glColor3f(GLfloat r, GLfloat g, GLfloat b) {
    if (Drawing("glColor3f")) SetColour(r, g, b, 1.0f);
}
void glColor4f(GLfloat r, GLfloat g, GLfloat b, GLfloat a) {
    if (Drawing("glColor4f")) SetColour(r, g, b, a);
}
void glColor3d(GLdouble r, GLdouble g, GLdouble b) {
    if (Drawing("glColor3d")) SetColour(float(r), float(g), float(b), 1.0f);
}
void glColor4d(GLdouble r, GLdouble g, GLdouble b, GLdouble a) {
    if (Drawing("glColor4d")) SetColour(float(r), float(g), float(b), float(a));
}
void glColor3fv(const GLfloat* v) {
    if (Drawing("glColor3fv") && v != nullptr) SetColour(v[0], v[1], v[2], 1.0f);
}
void glColor4fv(const GLfloat* v) {
    if (Drawing("glColor4fv") && v != nullptr) SetColour(v[0], v[1], v[2], v[3]);
}
void glColor3ub(GLubyte r, GLubyte g, GLubyte b) {
    if (Drawing("glColor3ub")) SetColour(r / 255.0f, g / 255.0f, b / 255.0f, 1.0f);
}
void glColor4ub(GLubyte r, GLubyte g, GLubyte b, GLubyte a) {
    if (Drawing("glColor4ub")) SetColour(r / 255.0f, g / 255.0f, b / 255.0f, a / 255.0f);
}

void glLineWidth(GLfloat width) {
    if (!Drawing("glLineWidth")) return;
    if (!(width > 0.0f) || !std::isfinite(width)) {
        xpsim::ReportMisuse("glLineWidth", "the width must be above 0; unchanged");
        return;
    }
    gl().lineWidth = std::fmin(width, 64.0f);
}

void glPointSize(GLfloat size) {
    if (!Drawing("glPointSize")) return;
    if (!(size > 0.0f) || !std::isfinite(size)) {
        xpsim::ReportMisuse("glPointSize", "the size must be above 0; unchanged");
        return;
    }
    gl().pointSize = std::fmin(size, 64.0f);
}

void glRectf(GLfloat x1, GLfloat y1, GLfloat x2, GLfloat y2) { Rect(x1, y1, x2, y2); }
void glRecti(GLint x1, GLint y1, GLint x2, GLint y2) { Rect(x1, y1, x2, y2); }
void glRectd(GLdouble x1, GLdouble y1, GLdouble x2, GLdouble y2) { Rect(x1, y1, x2, y2); }

void glEnable(GLenum capability) {
    if (Drawing("glEnable")) SetCapability(capability, true);
}
void glDisable(GLenum capability) {
    if (Drawing("glDisable")) SetCapability(capability, false);
}
GLboolean glIsEnabled(GLenum capability) {
    if (capability == GL_BLEND) return gl().blend ? GL_TRUE : GL_FALSE;
    if (capability == GL_TEXTURE_2D) return gl().texture ? GL_TRUE : GL_FALSE;
    return GL_FALSE;
}

void glBlendFunc(GLenum sourceFactor, GLenum destinationFactor) {
    if (!Drawing("glBlendFunc")) return;
    gl().sourceFactor = sourceFactor;
    gl().destinationFactor = destinationFactor;
}

void glMatrixMode(GLenum mode) {
    if (Drawing("glMatrixMode") && (mode == GL_MODELVIEW || mode == GL_PROJECTION || mode == GL_TEXTURE))
        gl().matrixMode = mode;
}

void glPushMatrix(void) {
    if (!Drawing("glPushMatrix")) return;
    GlState& g = gl();
    const size_t depth = g.matrixMode == GL_MODELVIEW ? g.modelview.size() : g.otherDepth;
    if (depth >= kMatrixStackDepth) {
        xpsim::ReportMisuse("glPushMatrix", "the matrix stack is full (" + std::to_string(kMatrixStackDepth) + ")");
        return;
    }
    if (g.matrixMode == GL_MODELVIEW)
        g.modelview.push_back(g.modelview.back());
    else
        g.otherDepth++;
}

void glPopMatrix(void) {
    if (!Drawing("glPopMatrix")) return;
    GlState& g = gl();
    const size_t depth = g.matrixMode == GL_MODELVIEW ? g.modelview.size() : g.otherDepth;
    if (depth <= 1) {
        xpsim::ReportMisuse("glPopMatrix", "the matrix stack is empty");
        return;
    }
    if (g.matrixMode == GL_MODELVIEW)
        g.modelview.pop_back();
    else
        g.otherDepth--;
}

void glLoadIdentity(void) {
    if (!Drawing("glLoadIdentity")) return;
    if (Matrix* m = CurrentMatrix()) *m = Matrix();
}

void glTranslatef(GLfloat x, GLfloat y, GLfloat) {
    if (!Drawing("glTranslatef") || !std::isfinite(x) || !std::isfinite(y)) return;
    if (Matrix* m = CurrentMatrix()) {
        m->tx += m->sx * x;
        m->ty += m->sy * y;
    }
}
void glTranslated(GLdouble x, GLdouble y, GLdouble z) { glTranslatef(GLfloat(x), GLfloat(y), GLfloat(z)); }

void glScalef(GLfloat x, GLfloat y, GLfloat) {
    if (!Drawing("glScalef") || !std::isfinite(x) || !std::isfinite(y)) return;
    if (Matrix* m = CurrentMatrix()) {
        m->sx *= x;
        m->sy *= y;
    }
}

// Texture coordinates and shading are accepted and have no effect: textures are not sampled and
// shapes are painted flat.
void glTexCoord2f(GLfloat, GLfloat) {}
void glTexCoord2i(GLint, GLint) {}
void glTexCoord2d(GLdouble, GLdouble) {}
void glShadeModel(GLenum) {}

GLenum glGetError(void) { return GL_NO_ERROR; }

}  // extern "C"
