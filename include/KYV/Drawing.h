#ifndef KYV_DRAWING_H
#define KYV_DRAWING_H

namespace KYV {

class Date;
class Domain;
class Plot;

/// A layer that a figure draws: it chooses its data, says how it loops over frames, and draws a frame.
class Drawing {
 public:
  /// How a layer loops over frames.
  enum LoopType { LOOP_NONE = 0, LOOP_DATE = 1, LOOP_FORE = 2 };

  virtual ~Drawing() = default;

  /// Resets the layer to its defaults and reads its resources.
  virtual int init() = 0;
  /// A domain suited to the layer's data; 0 when it has none.
  virtual int getDomain(Domain& domain) = 0;
  /// Prepares the choice of files from the resources.
  virtual int setFile() = 0;
  virtual int setInput(const char* type) = 0;
  virtual int setNameConv(const char* conv) = 0;
  // The file: from the resources; this name or specification; the one valid at a date (for a specification). Whether
  // there is one.
  virtual int setFilename() = 0;
  virtual int setFilename(const char* name) = 0;
  virtual int setFilename(Date& date) = 0;
  virtual int setFilename(Date& date, const char* name) = 0;
  virtual int setForeTime(const char* fore) = 0;
  virtual int setParam(const char* params) = 0;
  /// The date of the current data.
  virtual int getDate(Date& date) = 0;
  virtual int getLoopType() = 0;
  /// The date that the loop is counted from.
  virtual int getInitDate(Date& date) = 0;
  /// The time of the current data where the user has named their file, so that no date has chosen it; false otherwise.
  virtual bool getDataTime(Date& /*date*/) { return false; }
  /// Seconds between frames.
  virtual int getDateOffset() = 0;
  virtual int getNumFrames() = 0;
  /// Whether this layer sets the loop for all.
  virtual int getSync() = 0;
  /// Draws the current frame; 0 when there was nothing to draw.
  virtual int draw(Plot& plot) = 0;
  /// The layer's settings on standard output.
  virtual int print() = 0;
};

}  // namespace KYV
#endif
