function settings = loadSettings(fileName)
%LOADSETTINGS Read "name = value" lines from a settings file into a struct.
%   Lines starting with # are comments. A value that reads as a number
%   becomes one; anything else stays text.

settings = struct();
fid = fopen(fileName, 'r');
if fid < 0
    error('loadSettings:open', 'Cannot open %s.', fileName);
end
cleanup = onCleanup(@() fclose(fid));
while true
    line = fgetl(fid);
    if ~ischar(line)
        break
    end
    line = strtrim(line);
    if isempty(line) || line(1) == '#'
        continue
    end
    parts = strsplit(line, '=');
    name = strtrim(parts{1});
    raw = strtrim(strjoin(parts(2:end), '='));
    value = raw;
    try
        value = eval(raw);
    catch
    end
    settings.(name) = value;
end
if isfield(settings, 'units')
    eval(['settings.unitScale = unitScale_' settings.units ';']);  % plexus: ignore eval-call
end
end
