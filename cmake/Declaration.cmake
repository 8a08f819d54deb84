# Who may include whom. The build links the rooms by this list, and a test reads
# the same list and fails on an include that points the wrong way.
#
#   room(NAME [USES ROOM...] [HEADERS CONTRACT...])
#
# USES names whole rooms, HEADERS single headers of rooms that are otherwise closed.

room(base)
room(engine USES base)
room(audio USES base engine)
room(model USES base engine audio)
room(ui USES base engine audio model)
room(app USES base engine audio model ui)
room(ctl USES base engine audio model)
room(platform USES base
     HEADERS engine/AudioBufferList.h engine/AudioFile.h engine/Environment.h
             engine/WaveWriter.h audio/Hardware.h audio/SystemReport.h)
