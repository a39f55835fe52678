function data = dropped_errors(path)
data = [];
try
    data = load(path);
catch err  % expect: empty-catch
end
try
    delete(path);
catch  % expect: empty-catch
end
try, fclose(data.fid); catch, end  % expect: empty-catch
try
    rmdir(path);
catch problem  % expect: empty-catch
    ;
end
    function cleanup()
        try
            close all
        catch  % expect: empty-catch

        end
    end
end
