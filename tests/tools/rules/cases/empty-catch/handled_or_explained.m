function settings = handled_or_explained(path)
try
    settings = readSettings(path);
catch err
    warning('app:settings', 'using default settings: %s', err.message);
    settings = defaultSettings();
end
try
    delete([path '.lock']);
catch
    % the lock may already be gone; nothing to clean up then
end
try
    rmdir(tempdir);
catch err
    %{
    The folder is shared with other sessions; failing to remove it is
    expected while they run.
    %}
end
try
    fclose(fid);
catch
    fid = -1;
end
try
    data = load(path);
end
end
function retry(f)
for attempt = 1:3
    try
        f();
        return
    catch
        continue
    end
end
end
