"""All that is read or told in Nightfall."""

#: Notes: title, text. Each tells of something that can be done with it.
PORTER = ('Monday, 8 January 1911',
          'The passage door is locked from nine on, whoever asks.\nIts key lies in the top drawer in number six, '
          'where it has always been.\n\nTake a lamp. The wall lamps do as they please.')
LODGER = ('14 January 1911',
          'Heard him again in the passage after one.\nHe goes where it is bright. We put ours out, stood against '
          'the wall and did not move until he had gone by.\nThe prints dry in a minute.')
HOUSEKEEPER = ('20 January 1911',
               'Stair key: on the trunk in the linen room.\nThe linen room is bolted from within, as nobody will own '
               'to. One can still get in from the sewing room, through the hatch, on hands and knees.')
SEAMSTRESS = ('21 January 1911',
              'I have counted them again and I do not turn my back on them any more.\nAs long as I look they '
              'are only wood.')
PLUMBER = ('23 January 1911',
           'There is no fault in the pipes. It is in the pipes.\nIt has no eyes and it has very good ears. Throw '
           'something far off and go the other way, and shut doors behind you: it minds doors.')
CARRIER = ('24 January 1911',
           'Lift: goes, takes its time, and is heard down to the cellar.\nCoal chute: quiet, if you fit. A man went '
           'down it in October. His lamp is still up here.')

#: Endings, three sentences each, and how to begin again.
BY_LIFT = ('The lift went down past three doors that were not on the list.',
           'Something kept level with it, in the pipes.',
           'You still had your light, and now the whole house knew it.')
BY_CHUTE = ('The coal was warm, as if somebody had just lain there.',
            'Your lamp stayed above, and its light went on moving about the passage without you.',
            'Nothing had heard you come.')
AGAIN = '%s   begin again'

#: What one died of.
BY_DAMP = 'It has no eyes. It went to the loudest thing on the stairs.'
BY_GUEST = 'He goes where it is bright.'
BY_FITTINGS = 'They move when nobody looks.'
BY_NOTHING = 'The house went on without you.'

#: Tutorials: action and text.
LOOK = ('', 'Mouse   look about')
WALK = ('forward', 'go; A and D to the side, S back')
USE = ('use', 'open, take, read')
LIGHT = ('flashlight', 'switch the lamp')
BATTERY = ('battery', 'put a fresh battery in')
CROUCH = ('crouch', 'stoop')
RUN = ('run', 'run, as long as the breath lasts')
LEAN = ('leanLeft', 'lean to the left; C to the right')
THROW = ('throw', 'throw what you hold')
SHUT = ('use', 'shut the door behind you')

BOLT = 'The bolt was on this side.'
FRONT_DOOR = 'Snow to the latch.'
CHUTE_STUCK = 'Hands and knees, and no room for a lamp.'
LIFT_COMES = 'Somewhere below, the lift begins to climb.'
